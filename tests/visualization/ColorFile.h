#pragma once

#include "support/SandboxedHome.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <array>
#include <vector>

/**
 * A colour file in a home of its own, put together section by section and read by whatever asks for colours after
 * `write`.
 *
 * Thread: main thread of the test.
 */
class ColorFile final
{
public:
    using Rgb = std::array<int, 3>;

    struct Band
    {
        Rgb lower;
        Rgb upper;
    };

    /// `keys` are lines of the section; the number of the scale's colour set is its own.
    ColorFile& scale(int number, const QByteArray& keys, const QList<QByteArray>& seams)
    {
        _text += "[COLORSCALE " + QByteArray::number(number) + "]\n" + keys;
        _text += "colorset_index=" + QByteArray::number(number) + "\n";
        for (int i = 0; i < seams.size(); ++i) {
            _text += "points\\" + QByteArray::number(i + 1) + "\\seam=" + seams.at(i) + "\n";
        }
        _text += "points\\size=" + QByteArray::number(seams.size()) + "\n";
        return *this;
    }

    ColorFile& colors(int number, const std::vector<Band>& bands, const QByteArray& keys = "name=set\n")
    {
        _text += "[COLORSET " + QByteArray::number(number) + "]\n" + keys;
        for (std::size_t i = 0; i < bands.size(); ++i) {
            const QByteArray entry = "points\\" + QByteArray::number(static_cast<int>(i + 1)) + "\\";
            color(entry + "lower/", bands[i].lower);
            color(entry + "upper/", bands[i].upper);
        }
        _text += "points\\size=" + QByteArray::number(static_cast<int>(bands.size())) + "\n";
        return *this;
    }

    /// Every raw data type from 0 to 13 belongs to the group of that place.
    ColorFile& mapping(const std::array<int, 14>& groups)
    {
        _text += "[DATAMAPPING]\n";
        for (std::size_t i = 0; i < groups.size(); ++i) {
            const QByteArray entry = "data\\" + QByteArray::number(static_cast<int>(i + 1)) + "\\";
            _text += entry + "data_index=" + QByteArray::number(groups.at(i)) + "\n";
            _text += entry + "name=Quantity " + QByteArray::number(static_cast<int>(i)) + "\n";
            _text += entry + "type=T" + QByteArray::number(static_cast<int>(i)) + "\n";
            _text += entry + "linear=" + (i == 13 ? "false" : "true") + "\n";
        }
        _text += "data\\size=14\n";
        return *this;
    }

    ColorFile& raw(const QByteArray& text)
    {
        _text += text;
        return *this;
    }

    QString write() const { return _home.write(QStringLiteral(".config/Halmera/TORV3DColors.conf"), _text); }
    QString path() const { return _home.filePath(QStringLiteral(".config/Halmera/TORV3DColors.conf")); }
    const SandboxedHome& home() const { return _home; }

private:
    void color(const QByteArray& prefix, const Rgb& rgb)
    {
        // Qt's INI form writes "/" inside a section as "\".
        const QByteArray key = QByteArray(prefix).replace('/', '\\');
        for (std::size_t i = 0; i < 3; ++i) {
            _text += key + "rgb"[i] + "=" + QByteArray::number(rgb.at(i)) + "\n";
        }
    }

    SandboxedHome _home;
    QByteArray _text;
};
