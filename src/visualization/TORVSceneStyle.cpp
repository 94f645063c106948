#include "visualization/TORVSceneStyle.h"

#include "utils/TORVSettingsReader.h"

#include <QCoreApplication>
#include <QSettings>
#include <QVariant>

TORVSceneStyle::TORVSceneStyle(const QString& group, bool night)
    : _settings(std::make_unique<QSettings>(QCoreApplication::organizationName(), QStringLiteral("TORV3DVisStyles")))
{
    _settings->beginGroup(group + (night ? QLatin1String("_NIGHT") : QLatin1String("_DAY")));
}

TORVSceneStyle::~TORVSceneStyle() = default;

TORVSceneStyle::Color TORVSceneStyle::color(const char* name, const Color& byDefault) const
{
    static const char* const channels[] = {"/r", "/g", "/b"};
    Color color = byDefault;
    for (std::size_t channel = 0; channel < color.size(); ++channel) {
        const QVariant value = _settings->value(QLatin1String(name) + QLatin1String(channels[channel]));
        color[channel] = TORVSettingsReader::real(value, byDefault[channel], 0.0, 1.0);
    }
    return color;
}

double TORVSceneStyle::number(const char* key, double byDefault, double min, double max) const
{
    return TORVSettingsReader::real(_settings->value(QLatin1String(key)), byDefault, min, max);
}

int TORVSceneStyle::integer(const char* key, int byDefault, int min, int max) const
{
    return TORVSettingsReader::integer(_settings->value(QLatin1String(key)), byDefault, min, max);
}
