#pragma once

#include <QString>

class TORVDataType;
class TORVGeneralSettings;

/**
 * How the cursor tool writes its figures, in the units of the settings. A figure that rounds to zero has no sign.
 *
 * Thread: main thread only.
 */
class TORVCursorText final
{
public:
    TORVCursorText() = delete;

    static QString height(const TORVGeneralSettings& settings, double metres);
    static QString distance(const TORVGeneralSettings& settings, double km);

    /// @param positive, negative  written after the distance, which is without its sign
    static QString directed(const TORVGeneralSettings& settings, double km, const QString& positive,
                            const QString& negative);
    static QString angle(double degrees);

    /// Coordinates that take as much room as any.
    static QString widestCoordinates(const TORVGeneralSettings& settings);

    /// A value that takes as much room as those that are met: hardly a rain exceeds 999 mm/h.
    static QString widestValue(const TORVDataType& type);
};
