#pragma once

#include <QString>

#include <QtEndian>

#include <array>
#include <cstdint>

/**
 * The `PHD`: the 640 bytes at the start of a product file, little-endian, read field by field where they lie. What no
 * accessor names is of no use to this program and stays as it is.
 *
 * The fields are taken as they stand in the file: whoever calculates with them does it in 64 bits or in double.
 *
 * Thread: a plain value, any thread.
 */
class TORVProductHeader final
{
public:
    static constexpr int Size = 640;

    /// The raw bytes, to be read into; all zero at first.
    char* data() { return _bytes.data(); }
    int16_t structureId() const { return field<int16_t>(0); }        ///< 27 in every product
    int32_t totalBytes() const { return field<int32_t>(4); }         ///< of the complete file, header included
    int16_t configStructureId() const { return field<int16_t>(12); } ///< 26 in every product
    uint16_t productType() const { return field<uint16_t>(24); }
    uint32_t dataSeconds() const { return field<uint32_t>(44); } ///< since midnight UTC
    uint16_t dataYear() const { return field<uint16_t>(50); }
    uint16_t dataMonth() const { return field<uint16_t>(52); }
    uint16_t dataDay() const { return field<uint16_t>(54); }
    int32_t xScale() const { return field<int32_t>(100); } ///< cm between grid points
    int32_t yScale() const { return field<int32_t>(104); }
    int32_t zScale() const { return field<int32_t>(108); }
    int32_t xPoints() const { return field<int32_t>(112); }
    int32_t yPoints() const { return field<int32_t>(116); }
    int32_t zPoints() const { return field<int32_t>(120); }
    int32_t xRadar() const { return field<int32_t>(124); } ///< thousandths of a step from the first point
    int32_t yRadar() const { return field<int32_t>(128); }
    int32_t zRadar() const { return field<int32_t>(132); } ///< thousandths of a metre
    uint16_t dataType() const { return field<uint16_t>(142); }
    uint8_t projectionType() const { return field<uint8_t>(158); } ///< 0 azimuthal equidistant, 1 Mercator
    QString siteName() const;                                      ///< up to the first NUL, as it stands
    uint32_t siteLatitude() const { return field<uint32_t>(440); } ///< binary angle, 2^32 is the full circle
    uint32_t siteLongitude() const { return field<uint32_t>(444); }
    int16_t groundElevation() const { return field<int16_t>(448); } ///< m above sea level
    int16_t radarHeight() const { return field<int16_t>(450); }     ///< m above the ground
    int32_t prf() const { return field<int32_t>(452); }             ///< Hz
    uint16_t prfRatioCode() const { return field<uint16_t>(462); }
    int32_t wavelength() const { return field<int32_t>(480); } ///< hundredths of a cm
    uint16_t nyquistHalvingCode() const { return field<uint16_t>(504); }
    uint32_t earthRadius() const { return field<uint32_t>(552); }        ///< cm, 0 for the default radius
    uint32_t earthInvFlattening() const { return field<uint32_t>(556); } ///< millionths, 0 for a sphere

    /**
     * Whether the header describes something that can exist on this Earth. It looks at everything that an assertion
     * downstream relies on, so a product from a directory is asked before anything is built on it.
     * @return empty, or the reason in words for the log.
     */
    QString whyRefused() const;

private:
    bool isSiteNamed() const;

    template <typename T>
    T field(int offset) const
    {
        return qFromLittleEndian<T>(_bytes.data() + offset);
    }

    std::array<char, Size> _bytes{};
};
