#pragma once

#include <QString>

/**
 * Makes a test fail on every warning of Qt and every warning or error of VTK that it did not announce. Installed once
 * by the common main of the tests.
 *
 * Thread: `expect` on the test's thread; messages may come from any.
 */
class MessageGuard final
{
public:
    MessageGuard() = delete;

    /// Takes over Qt's message handler and VTK's output window, and watches each test of the process.
    static void install();

    /// Messages that contain `part` belong to the running test; one of them must come, or the test fails.
    static void expect(const QString& part);

    /// The same, but none need come.
    static void allow(const QString& part);
};
