#include "utils/TORVSettingsReader.h"

#include <QSettings>
#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace
{

QVector<int> storedIndexes(const QSettings& settings, int size)
{
    QVector<int> indexes;
    const QStringList groups = settings.childGroups();
    for (const QString& group : groups) {
        const int number = group.toInt(); // 0 if it is none; the file counts from 1
        if (number >= 1 && number <= size) {
            indexes.append(number - 1);
        }
    }
    std::sort(indexes.begin(), indexes.end());
    // "7" and "07" are two groups and one number.
    indexes.erase(std::unique(indexes.begin(), indexes.end()), indexes.end());
    return indexes;
}

} // namespace

QString TORVSettingsReader::text(const QVariant& value, const QString& byDefault)
{
    if (value.type() == QVariant::StringList) {
        return value.toStringList().join(QLatin1Char(','));
    }
    return value.canConvert<QString>() ? value.toString() : byDefault;
}

bool TORVSettingsReader::flag(const QVariant& value, bool byDefault)
{
    return value.isValid() ? value.toBool() : byDefault;
}

double TORVSettingsReader::real(const QVariant& value, double byDefault, double min, double max)
{
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::clamp(number, min, max) : byDefault;
}

int TORVSettingsReader::integer(const QVariant& value, int byDefault, int min, int max)
{
    return static_cast<int>(real(value, byDefault, min, max));
}

QVector<int> TORVSettingsReader::arrayIndexes(const QSettings& settings, int size)
{
    if (size > TrustedArraySize) {
        return storedIndexes(settings, size);
    }
    QVector<int> indexes(std::max(size, 0));
    std::iota(indexes.begin(), indexes.end(), 0);
    return indexes;
}
