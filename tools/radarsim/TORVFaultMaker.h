#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>

/**
 * Bad files of every kind that a watched directory meets in real life.
 *
 * Thread: any thread.
 */
class TORVFaultMaker final
{
public:
    TORVFaultMaker() = delete;

    enum Fault : int
    {
        TRUNCATED,    ///< a product that ends in the middle of its data, for good
        GARBAGE,      ///< random bytes under a product's name
        FOREIGN,      ///< a text file
        DUPLICATE,    ///< a product once more under a second name
        UNREADABLE,   ///< a product that nobody may read
        WRONGLY_TYPED ///< a product of a data type that doesn't exist
    };

    static constexpr int Faults = 6;

    /// The kind whose turn it is.
    static Fault faultOf(int64_t turn) { return static_cast<Fault>(((turn % Faults) + Faults) % Faults); }

    /// The file's name: that of a product half a minute after the one it is made from; the duplicate keeps the time.
    static QString fileName(Fault fault, const QString& prefix, int64_t time);

    static QByteArray bytes(Fault fault, const QByteArray& product, uint32_t seed);

    /// Writes the file into `directory`.
    /// @return an empty text, or in words why it could not be written.
    static QString write(Fault fault, const QString& directory, const QString& prefix, int64_t time,
                         const QByteArray& product);
};
