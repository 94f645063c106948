#include "support/ProductFiles.h"

#include "radarsim/TORVProductWriter.h"

#include <QFile>

#include <gtest/gtest.h>

#include <random>

ProductFiles::ProductFiles()
{
    EXPECT_TRUE(_directory.isValid());
}

TORVProductFields ProductFiles::small()
{
    TORVProductFields fields;
    fields.xPoints = 4;
    fields.yPoints = 3;
    fields.zPoints = 2;
    fields.xRadar = 1500;
    fields.yRadar = 1000;
    return fields;
}

QByteArray ProductFiles::data(const TORVProductFields& fields, const Field& field, int itemSize)
{
    QByteArray bytes;
    bytes.reserve(fields.xPoints * fields.yPoints * fields.zPoints * itemSize);
    for (int z = 0; z < fields.zPoints; ++z) {
        for (int y = 0; y < fields.yPoints; ++y) {
            for (int x = 0; x < fields.xPoints; ++x) {
                const unsigned int raw = field(x, y, z);
                bytes.append(static_cast<char>(raw & 0xFFU));
                if (itemSize == 2) {
                    bytes.append(static_cast<char>(raw >> 8U));
                }
            }
        }
    }
    return bytes;
}

QByteArray ProductFiles::zeros(const TORVProductFields& fields, int itemSize)
{
    return QByteArray(fields.xPoints * fields.yPoints * fields.zPoints * itemSize, '\0');
}

QString ProductFiles::write(const QString& name, const TORVProductFields& fields) const
{
    return write(name, fields, zeros(fields));
}

QString ProductFiles::write(const QString& name, const TORVProductFields& fields, const QByteArray& data) const
{
    return writeBytes(name, TORVProductWriter::file(fields, data));
}

QString ProductFiles::writeBytes(const QString& name, const QByteArray& bytes) const
{
    QFile file(path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << qUtf8Printable(path(name));
    EXPECT_EQ(file.write(bytes), bytes.size());
    return path(name);
}

QString ProductFiles::writeTruncated(const QString& name, const TORVProductFields& fields, int bytes) const
{
    return writeBytes(name, TORVProductWriter::file(fields, zeros(fields)).left(bytes));
}

QString ProductFiles::writeGarbage(const QString& name, int bytes, unsigned int seed) const
{
    std::mt19937 random(seed);
    QByteArray garbage(bytes, '\0');
    for (char& byte : garbage) {
        byte = static_cast<char>(random());
    }
    return writeBytes(name, garbage);
}
