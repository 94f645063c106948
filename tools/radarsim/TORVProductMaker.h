#pragma once

#include "radarsim/TORVPolarVolume.h"
#include "radarsim/TORVProductFields.h"
#include "radarsim/TORVProductKind.h"
#include "radarsim/TORVVolumeGridder.h"

#include <QByteArray>

#include <vector>

class TORVDataType;

/**
 * Makes products out of one scan. The grid of the reflectivity, which most products need, is made once.
 *
 * Thread: caller locks; each scan has a maker of its own.
 */
class TORVProductMaker final
{
public:
    /// `header` holds what all products of the scan have in common; maker, gridder and volume are used by one thread.
    TORVProductMaker(const TORVVolumeGridder& gridder, const TORVPolarVolume& volume, const TORVProductFields& header);

    /// A whole file; `wide` asks for two bytes an item where the kind has both forms.
    QByteArray file(const TORVProductKind& kind, bool wide) const;

private:
    std::vector<float> values(const TORVProductKind& kind) const;
    std::vector<float> foldedVelocity() const;
    std::vector<float> rain(std::vector<float> dbz) const;
    std::vector<float> highest() const;
    std::vector<float> integratedWater() const;
    std::vector<float> lowest() const;
    std::vector<float> level(float height) const;

    const TORVVolumeGridder& _gridder;
    const TORVPolarVolume& _volume;
    TORVProductFields _header;
    std::vector<float> _dbz;
};
