#pragma once

#include "datalib/TORVFile.h"

#include <QImage>
#include <QString>

/**
 * A picture of one product for a person to judge: two heights side by side and under them a west-east and a south-north
 * cut through the strongest column, in the colours of the demo's scales. Flat products fill one field.
 *
 * Thread: any thread.
 */
class TORVCutPicture final
{
public:
    TORVCutPicture() = delete;

    /// Where the cuts lie, in grid points; below 0: through the strongest column.
    struct Cuts
    {
        int row = -1;
        int column = -1;
    };

    /// A null image if the data can't be read.
    static QImage draw(const TORVFile& file, const Cuts& cuts);
};
