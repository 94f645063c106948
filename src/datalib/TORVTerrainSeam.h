#pragma once

#include <QVector>

#include <boost/shared_ptr.hpp>

class TORVTerrainFile;

/**
 * Makes the light run on over the edges between blocks. Each block's normals are worked out from its own ground alone;
 * along a common edge the two sides then differ and the edge shows as a line.
 *
 * Thread: that of the loader, before anybody else sees the blocks.
 */
class TORVTerrainSeam final
{
public:
    TORVTerrainSeam() = delete;

    /// Gives edge points that blocks have in common one normal, the mean of the blocks'. Where the ground itself breaks
    /// off, as it does beside a square without a file, both sides keep their own.
    static void join(const QVector<boost::shared_ptr<TORVTerrainFile>>& blocks);
};
