#pragma once

#include <QString>

/// Real products, terrain and landmarks that lie beside the project on some machines. A test that needs them skips
/// with TORV_NEEDS_SHARED_DATA() where they are absent.
class SharedData final
{
public:
    SharedData() = delete;

    static bool isPresent();

    /// `name` relative to the data directory.
    static QString path(const QString& name);
};

#define TORV_NEEDS_SHARED_DATA()                                                                                       \
    if (!SharedData::isPresent())                                                                                      \
    GTEST_SKIP() << "the real products are not on this machine"
