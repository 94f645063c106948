#include "radarsim/TORVFaultMaker.h"

#include "radarsim/TORVHash.h"
#include "radarsim/TORVProductWriter.h"

#include <QDateTime>
#include <QFile>

#include <algorithm>

namespace
{

constexpr int DataTypeOffset = 142;
constexpr char NoSuchType = 99;
constexpr int64_t Later = 30; // s

const char* const Extensions[TORVFaultMaker::Faults] = {"CAPZ", "CAPZ", "txt", "CAPZ_copy", "CAPZ", "CAPZ"};

QByteArray garbage(uint32_t seed)
{
    constexpr uint32_t Least = 1000;
    constexpr uint32_t Most = 100000;
    QByteArray bytes(static_cast<int>(Least + TORVHash::mix(seed) % (Most - Least)), '\0');
    for (int i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(TORVHash::mix(seed, static_cast<uint32_t>(i)) & 255U);
    }
    return bytes;
}

} // namespace

QString TORVFaultMaker::fileName(Fault fault, const QString& prefix, int64_t time)
{
    const int64_t moment = fault == DUPLICATE ? time : time + Later;
    const QString stamp = QDateTime::fromSecsSinceEpoch(moment, Qt::UTC).toString(QStringLiteral("yyMMddhhmmss"));
    return QStringLiteral("%1%2.%3").arg(prefix, stamp, QLatin1String(Extensions[fault]));
}

QByteArray TORVFaultMaker::bytes(Fault fault, const QByteArray& product, uint32_t seed)
{
    switch (fault) {
    case TRUNCATED:
        return product.left(product.size() / 2);
    case GARBAGE:
        return garbage(seed);
    case FOREIGN:
        return "This is not a radar product.\n";
    case WRONGLY_TYPED: {
        QByteArray changed = product;
        changed[DataTypeOffset] = NoSuchType;
        return changed;
    }
    case DUPLICATE:
    case UNREADABLE:
        return product;
    }
    return {};
}

QString TORVFaultMaker::write(Fault fault, const QString& directory, const QString& prefix, int64_t time,
                              const QByteArray& product)
{
    const QString path = QStringLiteral("%1/%2").arg(directory, fileName(fault, prefix, time));
    const QString error = TORVProductWriter::write(path, bytes(fault, product, static_cast<uint32_t>(time)));
    if (error.isEmpty() && fault == UNREADABLE) {
        QFile::setPermissions(path, QFileDevice::Permissions());
    }
    return error;
}
