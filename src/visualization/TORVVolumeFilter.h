#pragma once

#include "datalib/TORVDataType.h"
#include "datalib/TORVProductData.h"

#include <vtkImageData.h>
#include <vtkSmartPointer.h>

#include <array>
#include <atomic>

/**
 * Makes the image that is drawn out of a product's raw items: special codes become no data, blocks of grid points
 * become their mean, and a Gaussian smooths what is left.
 *
 * No data is never a value. A mean is that of the block's valid points, and is no data where they are less than a
 * quarter of it. The Gaussian is the normalised convolution sum(w v m) / sum(w m) with the mask m of valid points
 * (Knutsson and Westin, 1993): a valid point stays valid, and a point of no data becomes one where the valid points
 * around it have more than half of the weight, which closes holes and lets no edge grow. Where every point is valid
 * this is the plain mean and the plain Gaussian.
 *
 * Thread: any; the work is spread over the machine's cores. Memory: the image (twice where a
 * shrunken image is smoothed), and a few megabytes for each core; 30 at the strongest smoothing of a large grid.
 */
class TORVVolumeFilter final
{
public:
    static constexpr int LargestShrink = 4;
    static constexpr double LargestSmooth = 10.0;

    /// Image units between two levels; columns and rows stand one unit apart.
    static constexpr double LevelSpacing = 5.0;

    /**
     * Values outside the limits are brought to the nearest one.
     * @param shrinkHorizontal  1 to 4 columns, and as many rows, that make a block
     * @param shrinkVertical    1 to 4 levels that make a block
     * @param smooth            0 to 10: standard deviation of the Gaussian in grid points before shrinking; it is cut
     *                          off at three times that
     */
    TORVVolumeFilter(int shrinkHorizontal, int shrinkVertical, double smooth);

    int getShrinkHorizontal() const { return _shrink[0]; }
    int getShrinkVertical() const { return _shrink[2]; }
    double getSmooth() const { return _smooth; }

    /**
     * Scalars of one or two unsigned bytes, as in the product. The image's coordinates are those of the product's grid
     * points, (column, row, 5 * level), and a block stands in its middle.
     * @param points  columns, rows and levels of `data`
     * @return null if `abort` was set meanwhile, or if there is not enough memory
     */
    vtkSmartPointer<vtkImageData> run(const TORVProductData& data, const std::array<int, 3>& points,
                                      const TORVDataType& type, const std::atomic<bool>& abort) const;

private:
    bool isShrinking() const { return _shrink[0] > 1 || _shrink[2] > 1; }

    std::array<int, 3> _shrink;
    double _smooth;
};
