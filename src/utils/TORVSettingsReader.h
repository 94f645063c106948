#pragma once

#include <QString>
#include <QVector>

class QSettings;
class QVariant;

/**
 * How the values of a settings file are taken. Such a file may come from an older or a newer version, from somebody's
 * editor or from an enemy, so nothing in it is believed: what can't be meant counts as absent.
 *
 * Thread: any thread; a `QSettings` object belongs to its borrower.
 */
class TORVSettingsReader final
{
public:
    TORVSettingsReader() = delete;

    /// An array of up to so many entries is read as its size says. It may have gaps, which read as defaults.
    static constexpr int TrustedArraySize = 1000;

    /// Qt takes a comma in a value that was written by hand for the end of the first item of a list: the items are
    /// joined again.
    static QString text(const QVariant& value, const QString& byDefault);

    static bool flag(const QVariant& value, bool byDefault);

    /// Brought into the range; the default where it is no number or not finite.
    static double real(const QVariant& value, double byDefault, double min, double max);

    /// The same, without the fraction.
    static int integer(const QVariant& value, int byDefault, int min, int max);

    /// What to give to `setArrayIndex` one after the other, for the array that was begun last and not moved in yet. Of
    /// an array with a larger size than is trusted these are the entries that stand in the file, in ascending order.
    static QVector<int> arrayIndexes(const QSettings& settings, int size);
};
