#pragma once

#include <QStringList>

class TORVFile;
class TORVGeneralSettings;

/**
 * What a product file tells of itself, in words and units for the reader; translated in the context
 * "TORVProductInformationDialog".
 *
 * Thread: main thread only.
 */
class TORVProductDetails final
{
public:
    enum Detail : int
    {
        LOCATION,
        SITE_HEIGHT,
        GRID,
        GRID_STEP,
        EXTENT,
        PROJECTION,
        EARTH_MODEL,
        NYQUIST,
        VALUE_RANGE,
        SIZE,
        FILE_NAME,
        DETAIL_COUNT
    };

    TORVProductDetails() = delete;

    /// One for each detail, in their order; null where the file has none. The file is valid.
    static QStringList of(const TORVFile& file, const TORVGeneralSettings& settings);

    /// The quantity with its unit; null where the data type isn't known.
    static QString quantity(const TORVFile& file);

    /// Site, product and time on one line.
    static QString product(const TORVFile& file, const TORVGeneralSettings& settings);
};
