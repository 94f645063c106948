#pragma once

#include "radarsim/TORVProductFields.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <functional>

/**
 * Product files for tests, good ones and broken ones, in a temporary directory that goes with the object.
 *
 * Thread: any thread, one at a time.
 */
class ProductFiles final
{
public:
    /// Raw value of grid point (x, y, z).
    using Field = std::function<unsigned int(int x, int y, int z)>;

    ProductFiles();
    QString path(const QString& name) const { return _directory.filePath(name); }

    /// A header field or two for a product of 4 x 3 x 2 points, for tests that don't look at the data.
    static TORVProductFields small();

    /// The data block of `fields`' grid in items of `itemSize` bytes.
    static QByteArray data(const TORVProductFields& fields, const Field& field, int itemSize = 1);
    static QByteArray zeros(const TORVProductFields& fields, int itemSize = 1);

    /// Each writes a file of that name and answers its absolute path.
    QString write(const QString& name, const TORVProductFields& fields) const;
    QString write(const QString& name, const TORVProductFields& fields, const QByteArray& data) const;
    QString writeBytes(const QString& name, const QByteArray& bytes) const;
    QString writeTruncated(const QString& name, const TORVProductFields& fields, int bytes) const;
    QString writeGarbage(const QString& name, int bytes, unsigned int seed = 1) const;

private:
    QTemporaryDir _directory;
};
