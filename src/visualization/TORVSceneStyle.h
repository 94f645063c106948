#pragma once

#include <QString>

#include <array>
#include <memory>

class QSettings;

/**
 * How one kind of thing looks in the scene: a group of the style file "TORV3DVisStyles" of the organisation, the user's
 * before the system's. The file is read and never written.
 *
 * | group                         | of                                  |
 * |-------------------------------|-------------------------------------|
 * | RENDERER_DAY, _NIGHT          | background, lights, marker, legend  |
 * | OUTLINE3D_DAY, _NIGHT         | box round the volume                |
 * | TERRAIN3D_DAY, _NIGHT         | tint of the ground                  |
 * | RADARRINGS_DAY, _NIGHT        | range rings                         |
 * | LATLONGRID_DAY, _NIGHT        | meridians and parallels             |
 * | COMPASS_DAY, _NIGHT           | compass                             |
 * | CURSORTOOL_DAY, _NIGHT        | 3-D cursor                          |
 *
 * Nothing in the file is believed: what is no number, or lies outside what can be meant, is the default.
 *
 * Thread: any thread, an object by one at a time.
 */
class TORVSceneStyle final
{
public:
    using Color = std::array<double, 3>; ///< red, green, blue, 0 to 1

    /// @param group  without its ending, "RENDERER"
    TORVSceneStyle(const QString& group, bool night);
    ~TORVSceneStyle();
    TORVSceneStyle(const TORVSceneStyle&) = delete;
    TORVSceneStyle& operator=(const TORVSceneStyle&) = delete;

    /// Of the keys "NAME/r", "NAME/g" and "NAME/b", each for itself.
    Color color(const char* name, const Color& byDefault) const;

    /// Of any finite number from `min` to `max`; what lies beyond is brought to the bound.
    double number(const char* key, double byDefault, double min, double max) const;
    int integer(const char* key, int byDefault, int min, int max) const;

private:
    std::unique_ptr<QSettings> _settings;
};
