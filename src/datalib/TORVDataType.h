#pragma once

#include <QString>

/**
 * What the raw numbers of a product mean: the quantity, its unit, the range of raw values, and the conversion between
 * raw and display values. Raw value 0 is "no data" in every type.
 *
 * One-byte velocity and spectrum width scale with the radar's Nyquist velocity, so a data type that is made from a
 * product file carries that file's Nyquist factor.
 *
 * Thread: a plain value, any thread.
 */
class TORVDataType final
{
public:
    /// `rawType` is the code of the product header; a code that is not known makes the type "Not available".
    explicit TORVDataType(int rawType);

    /// The four others as in `computeNyquistFactor`.
    TORVDataType(int rawType, int prf, int prfRatioCode, int wavelength, int nyquistHalvingCode);

    /// The same quantity in the same scaling, to the last bit.
    bool operator==(const TORVDataType& other) const;
    bool operator!=(const TORVDataType& other) const { return !(*this == other); }

    /// Translated in the context "TORVDataType".
    QString getQuantityName() const;
    QString getQuantityUnit() const;

    double absoluteToDisplayValue(unsigned int raw) const;

    /// `display` stays within `getMinDisplayValue` and `getMaxDisplayValue`: a value that would be below raw 0 stops
    /// the process, except in the velocity types, which limit their result themselves.
    unsigned int displayToAbsoluteValue(double display) const;

    int getMinAbsValue() const;
    int getMaxAbsValue() const;
    double getMinDisplayValue() const;
    double getMaxDisplayValue() const;

    /// The raw value that means "no data".
    int getNoDataValue() const;

    /// The header's code of this type, -1 where that was not known.
    int getRawType() const;

    /// Whether the sign of the display value is a direction, so that 0 lies between two meanings and not at an end.
    bool isVelocity() const;

    /// The display value with one decimal, or "NA".
    QString getDisplayStr(int raw) const;

    /**
     * Sets the Nyquist velocity in m/s that one-byte velocity and width scale with; 1 for all other types.
     * @param prf                 hertz
     * @param prfRatioCode        0 single rate; 1, 2, 3 dual rate, which widens the velocity range 2, 3, 4 times
     * @param wavelength          hundredths of a centimetre
     * @param nyquistHalvingCode  2 halves the result
     */
    void computeNyquistFactor(int prf, int prfRatioCode, int wavelength, int nyquistHalvingCode);

private:
    int _row = 0;
    double _nyquistFactor = 1.0;
};
