#include "radarsim/TORVDemoSettings.h"

#include "radarsim/TORVColorScale.h"
#include "radarsim/TORVDemoTables.h"
#include "radarsim/TORVSiteInfo.h"
#include "radarsim/TORVTerrainModel.h"
#include "settings/TORVConfig.h"

#include <QDir>
#include <QSettings>

#include <algorithm>
#include <cmath>

namespace
{

/// A settings file that is written as a whole when it is finished.
class Writer
{
public:
    explicit Writer(const QString& path) : _path(path), _settings(path, QSettings::IniFormat)
    {
        _settings.setIniCodec("UTF-8");
    }

    QSettings* operator->() { return &_settings; }

    void setColor(const QString& prefix, const double (&rgb)[3])
    {
        _settings.setValue(prefix + QLatin1String("/r"), rgb[0]);
        _settings.setValue(prefix + QLatin1String("/g"), rgb[1]);
        _settings.setValue(prefix + QLatin1String("/b"), rgb[2]);
    }

    QString finish()
    {
        _settings.sync();
        return _settings.status() == QSettings::NoError ? QString()
                                                        : QStringLiteral("%1: cannot be written").arg(_path);
    }

private:
    QString _path;
    QSettings _settings;
};

void writeBand(Writer& writer, const QString& end, uint32_t color)
{
    writer->setValue(end + QLatin1String("/r"), static_cast<int>((color >> 16) & 255U));
    writer->setValue(end + QLatin1String("/g"), static_cast<int>((color >> 8) & 255U));
    writer->setValue(end + QLatin1String("/b"), static_cast<int>(color & 255U));
}

void writeScale(Writer& writer, int number, const TORVColorScale& scale)
{
    writer->beginGroup(QStringLiteral("COLORSCALE %1").arg(number));
    writer->setValue(QStringLiteral("name"), QString::fromLatin1(scale.name));
    writer->setValue(QStringLiteral("colorset_index"), number);
    writer->setValue(QStringLiteral("low_saturate"), false);
    writer->setValue(QStringLiteral("hi_saturate"), true);
    writer->setValue(QStringLiteral("label_format"), QString::fromLatin1(scale.labelFormat));
    writer->setValue(QStringLiteral("data_units"), QString::fromLatin1(scale.unit));
    writer->setValue(QStringLiteral("data_index"), static_cast<int>(scale.group));
    writer->beginWriteArray(QStringLiteral("points"));
    int index = 0;
    for (const TORVColorScale::Stop& stop : scale.stops) {
        writer->setArrayIndex(index++);
        writer->setValue(QStringLiteral("seam"), stop.value);
    }
    writer->setArrayIndex(index);
    writer->setValue(QStringLiteral("seam"), scale.topSeam);
    writer->endArray();
    writer->endGroup();
}

/// One band a stop and one more that repeats the top colour above the last seam. The band below that one ends a shade
/// beside it: a band of one colour inside the list would make the whole scale a stepped one.
void writeColorSet(Writer& writer, int number, const TORVColorScale& scale)
{
    constexpr uint32_t OneShade = 1;
    writer->beginGroup(QStringLiteral("COLORSET %1").arg(number));
    writer->setValue(QStringLiteral("colorspace"), QStringLiteral("RGB"));
    writer->setValue(QStringLiteral("name"), QString::fromLatin1(scale.name));
    writer->beginWriteArray(QStringLiteral("points"));
    const std::size_t count = scale.stops.size();
    const uint32_t top = scale.stops.back().color;
    for (std::size_t i = 0; i <= count; ++i) {
        const uint32_t lower = i < count ? scale.stops[i].color : top;
        const uint32_t upper = i + 1 < count ? scale.stops[i + 1].color : top;
        writer->setArrayIndex(static_cast<int>(i));
        writeBand(writer, QStringLiteral("lower"), lower);
        writeBand(writer, QStringLiteral("upper"), i + 1 == count ? upper ^ OneShade : upper);
    }
    writer->endArray();
    writer->endGroup();
}

void writeDataMapping(Writer& writer)
{
    writer->beginGroup(QStringLiteral("DATAMAPPING"));
    writer->beginWriteArray(QStringLiteral("data"));
    int index = 0;
    for (const TORVColorGroup& group : TORVColorGroup::byDataType()) {
        writer->setArrayIndex(index++);
        writer->setValue(QStringLiteral("data_index"), static_cast<int>(group.group));
        writer->setValue(QStringLiteral("name"), QString::fromLatin1(group.legend));
        writer->setValue(QStringLiteral("type"), QString::fromLatin1(group.type));
        writer->setValue(QStringLiteral("linear"), group.group != TORVColorGroup::RAIN);
    }
    writer->endArray();
    writer->endGroup();
}

void writeProduct(Writer& writer, const TORVDemoTables::Product& product)
{
    writer->beginGroup(QString::fromLatin1(product.group));
    writer->setValue(QStringLiteral("rendering"), QString::fromLatin1(product.rendering));
    writer->setValue(QStringLiteral("colormap"), QStringLiteral("Default"));
    writer->beginWriteArray(QStringLiteral("surface"), static_cast<int>(product.surfaces.size()));
    int index = 0;
    for (const auto& surface : product.surfaces) {
        writer->setArrayIndex(index++);
        writer->setValue(QStringLiteral("isovalue"), surface.first);
        writer->setValue(QStringLiteral("opacity"), surface.second);
    }
    writer->endArray();
    writer->setValue(QStringLiteral("volumevaluelow"), product.valueLow);
    writer->setValue(QStringLiteral("volumeopacitylow"), product.opacityLow);
    writer->setValue(QStringLiteral("volumevaluehigh"), product.valueHigh);
    writer->setValue(QStringLiteral("volumeopacityhigh"), product.opacityHigh);
    writer->endGroup();
}

/// A general setting that the file has in neither of the forms that the viewer reads.
void writeIfAbsent(Writer& writer, const QString& key, const QVariant& value)
{
    const QString own = QStringLiteral("General/") + key;
    if (!writer->contains(own) && !writer->contains(TORVConfig::GENERAL_GROUP + QLatin1Char('/') + key)) {
        writer->setValue(own, value);
    }
}

void writeDisplayState(Writer& writer, const QString& name, const TORVDemoTables::DisplayState& state)
{
    using Layer = TORVDisplayLayer;
    constexpr int Opaque_percent = 100;
    writer->setValue(TORVConfig::DISPLAY_STATE_NAME, name);
    for (const Layer::Key key : {Layer::GROUP_RADARLAYERS, Layer::GROUP_GEOLAYERS, Layer::LAYER_3DOUTLINE,
                                 Layer::LAYER_3DPRODUCT, Layer::LAYER_2DPRODUCT, Layer::LAYER_RANGERINGS,
                                 Layer::LAYER_3DTERRAIN, Layer::LAYER_LATLONGRID, Layer::LAYER_GEOLABELS}) {
        const bool isHidden = std::find(state.hidden.begin(), state.hidden.end(), key) != state.hidden.end();
        const QString number = QString::number(static_cast<int>(key));
        writer->setValue(TORVConfig::DISPLAY_STATE_LAYER_VISIBLE + number, !isHidden);
        writer->setValue(TORVConfig::DISPLAY_STATE_LAYER_OPACITY + number, Opaque_percent);
    }
}

void writeViewAngle(Writer& writer, const QString& name, const TORVDemoTables::ViewAngle& angle)
{
    writer->setValue(TORVConfig::VIEW_ANGLE_NAME, name);
    writer->setValue(TORVConfig::VIEW_ANGLE_CAMPOS_X, angle.position[0]);
    writer->setValue(TORVConfig::VIEW_ANGLE_CAMPOS_Y, angle.position[1]);
    writer->setValue(TORVConfig::VIEW_ANGLE_CAMPOS_Z, angle.position[2]);
    writer->setValue(TORVConfig::VIEW_ANGLE_CAMDIR_X, angle.direction[0]);
    writer->setValue(TORVConfig::VIEW_ANGLE_CAMDIR_Y, angle.direction[1]);
    writer->setValue(TORVConfig::VIEW_ANGLE_CAMDIR_Z, angle.direction[2]);
}

/// The viewer's array begins with the state at exit, which is what it starts with the next time.
template <typename Preset>
void writePresets(Writer& writer, const QString& group, const QString& array, const std::vector<Preset>& presets,
                  void (*write)(Writer&, const QString&, const Preset&))
{
    if (writer->contains(QStringLiteral("%1/%2/size").arg(group, array))) {
        return;
    }
    writer->beginGroup(group);
    writer->beginWriteArray(array, static_cast<int>(presets.size()) + 1);
    writer->setArrayIndex(0);
    write(writer, QStringLiteral("Custom"), presets.front());
    int index = 1;
    for (const Preset& preset : presets) {
        writer->setArrayIndex(index++);
        write(writer, QString::fromLatin1(preset.name), preset);
    }
    writer->endArray();
    writer->endGroup();
}

/// The dry ground that is nearest to where a place should be: coasts and lakes are nobody's plan.
TORVPlace onLand(TORVPlace place, const TORVTerrainModel& terrain)
{
    constexpr double Step = 0.01;
    constexpr int Rings = 40;
    constexpr int Directions = 12;
    constexpr double TurnPerDirection = 6.283185307179586 / Directions;
    const TORVPlace wanted = place;
    for (int i = 0; i < Rings * Directions && terrain.height(place.latitude, place.longitude) < 1.0F; ++i) {
        const int ring = 1 + i / Directions;
        const double distance = Step * ring;
        place.latitude = wanted.latitude + distance * std::cos(TurnPerDirection * i);
        place.longitude = wanted.longitude + 2.0 * distance * std::sin(TurnPerDirection * i);
    }
    return place;
}

void writeLandmark(Writer& writer, int index, const TORVPlace& wanted, const TORVTerrainModel& terrain)
{
    const TORVPlace place = onLand(wanted, terrain);
    writer->setArrayIndex(index);
    writer->setValue(QStringLiteral("label"), QString::fromUtf8(place.name));
    writer->setValue(QStringLiteral("priority"), place.priority);
    writer->setValue(QStringLiteral("location/lat"), place.latitude);
    writer->setValue(QStringLiteral("location/lon"), place.longitude);
    writer->setValue(QStringLiteral("location/alt"),
                     std::round(static_cast<double>(terrain.height(place.latitude, place.longitude))));
    writer.setColor(QStringLiteral("color"), TORVDemoTables::landmarkColor(place.kind));
}

} // namespace

TORVDemoSettings::TORVDemoSettings(const QString& home) : _directory(home + QStringLiteral("/.config/Halmera"))
{
    QDir().mkpath(_directory);
}

QString TORVDemoSettings::path(const QString& name) const
{
    return QStringLiteral("%1/%2.conf").arg(_directory, name);
}

QString TORVDemoSettings::writeViewer(const QString& data3d, const QString& data2d, const QString& geo) const
{
    Writer writer(path(QStringLiteral("TORV3D")));
    // Qt writes its reserved group "General" in a form that the viewer recognises as its group of general settings.
    writer->setValue(QStringLiteral("General/data3d"), data3d);
    writer->setValue(QStringLiteral("General/data2d"), data2d);
    writer->setValue(QStringLiteral("General/geolayer"), geo);
    writer->setValue(QStringLiteral("General/datasmooth"), 0.5);
    writer->setValue(QStringLiteral("General/datashrink_h"), 1);
    writer->setValue(QStringLiteral("General/datashrink_v"), 1);
    for (const TORVDemoTables::Product& product : TORVDemoTables::products()) {
        writeProduct(writer, product);
    }
    return writer.finish();
}

QString TORVDemoSettings::writeStart(const QString& site) const
{
    Writer writer(path(QStringLiteral("TORV3D")));
    writeIfAbsent(writer, QStringLiteral("livemode"), true);
    writeIfAbsent(writer, QStringLiteral("livemode_site"), site);
    writeIfAbsent(writer, QStringLiteral("livemode_product3d"), QStringLiteral("CAPPI - Z"));
    writeIfAbsent(writer, QStringLiteral("livemode_product2d"), QStringLiteral("MAX"));
    for (const char* control : {"animtimespan", "animframeinterval", "animspeed", "animloopmode"}) {
        writeIfAbsent(writer, QLatin1String(control),
                      0); // three hours in steps of five minutes, as fast as may be, once
    }
    writePresets(writer, TORVConfig::DISPLAY_STATE_GROUP, TORVConfig::DISPLAY_STATE_ARRAY,
                 TORVDemoTables::displayStates(), writeDisplayState);
    writePresets(writer, TORVConfig::VIEW_ANGLE_GROUP, TORVConfig::VIEW_ANGLE_ARRAY, TORVDemoTables::viewAngles(),
                 writeViewAngle);
    return writer.finish();
}

QString TORVDemoSettings::writeColors() const
{
    Writer writer(path(QStringLiteral("TORV3DColors")));
    writer->clear();
    int number = 1;
    for (const TORVColorScale& scale : TORVColorScale::all()) {
        writeScale(writer, number, scale);
        writeColorSet(writer, number, scale);
        ++number;
    }
    writeDataMapping(writer);
    return writer.finish();
}

QString TORVDemoSettings::writeStyles() const
{
    Writer writer(path(QStringLiteral("TORV3DVisStyles")));
    writer->clear();
    for (const TORVDemoTables::StyleColor& style : TORVDemoTables::styleColors()) {
        writer.setColor(QStringLiteral("%1_DAY/%2").arg(QLatin1String(style.group), QLatin1String(style.key)),
                        style.day);
        writer.setColor(QStringLiteral("%1_NIGHT/%2").arg(QLatin1String(style.group), QLatin1String(style.key)),
                        style.night);
    }
    for (const TORVDemoTables::StyleNumber& style : TORVDemoTables::styleNumbers()) {
        writer->setValue(QStringLiteral("%1_DAY/%2").arg(QLatin1String(style.group), QLatin1String(style.key)),
                         style.day);
        writer->setValue(QStringLiteral("%1_NIGHT/%2").arg(QLatin1String(style.group), QLatin1String(style.key)),
                         style.night);
    }
    return writer.finish();
}

QString TORVDemoSettings::writeLandmarks(const std::vector<TORVSiteInfo>& sites, int count,
                                         const TORVTerrainModel& terrain) const
{
    Writer writer(path(QStringLiteral("TORV3DLandmarks")));
    writer->clear();
    writer->beginGroup(QStringLiteral("LANDMARKS"));
    writer->beginWriteArray(QStringLiteral("landmarks"));
    int index = 0;
    for (int site = 0; site < count; ++site) {
        for (const TORVPlace& place : sites[static_cast<std::size_t>(site)].places) {
            writeLandmark(writer, index++, place, terrain);
        }
    }
    writer->endArray();
    writer->endGroup();
    return writer.finish();
}
