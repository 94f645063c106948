#pragma once

#include "settings/TORVNamedValues.h"

#include <QString>
#include <QStringList>

#include <vector>

/**
 * What the user last chose in the export of pictures. An object begins with the defaults until it is loaded.
 *
 * Width and height are in pixels, 0 to `MaxSide`; 0 stands for the size of the display at the moment.
 *
 * Thread: main thread only; `load` and `save` borrow the settings, so the caller must not hold them.
 */
class TORVExportSettings final
{
public:
    /// In the file by its text; any other text is the last.
    enum OutputFormat : int
    {
        FORMAT_TIFF = 0,
        FORMAT_PNG = 1,
        FORMAT_JPEG = 2,
        FORMAT_UNKNOWN = 3
    };

    /// More than any display or printer takes, and a picture that still fits into memory.
    static constexpr int MaxSide = 10000;

    TORVExportSettings();

    void load();

    /// Writes what the file lacks and what was changed since this object last loaded or saved.
    void save() const;

    /// The defaults, but for the path.
    void reset();

    static const TORVNamedValues<OutputFormat>& formatNames();
    static QString getOutputFormatString(OutputFormat format) { return formatNames().text(format); }
    static OutputFormat getOutputFormatFromString(const QString& text) { return formatNames().value(text); }

    /// Without a point; that of TIFF for the unknown format.
    static QString getOutputFileExtension(OutputFormat format);

    static QStringList getSupportedOutputFormats();
    static QStringList getImageSizePresets(); ///< "width x height", without the blanks
    static QString getDefaultOutputFormatString();

    QString getOutputFormatString() const { return getOutputFormatString(getOutputFormat()); }
    QString getOutputFileExtension() const { return getOutputFileExtension(getOutputFormat()); }

    bool isColorBarShown() const { return _values.colorBar; }
    void setColorBarShown(bool shown) { _values.colorBar = shown; }
    bool isLegendShown() const { return _values.legend; }
    void setLegendShown(bool shown) { _values.legend = shown; }
    bool isCompassShown() const { return _values.compass; }
    void setCompassShown(bool shown) { _values.compass = shown; }
    OutputFormat getOutputFormat() const { return _values.outputFormat; }
    void setOutputFormat(OutputFormat format) { _values.outputFormat = format; }
    QString getPath() const { return _values.path; } ///< of a directory
    void setPath(const QString& directory) { _values.path = directory; }
    int getHeight() const { return _values.height; }
    void setHeight(int height) { _values.height = height; }
    int getWidth() const { return _values.width; }
    void setWidth(int width) { _values.width = width; }

private:
    // Defaults and ranges stand in the table of fields.
    struct Values
    {
        bool colorBar = true;
        bool legend = true;
        bool compass = true;
        OutputFormat outputFormat = FORMAT_TIFF;
        QString path;
        int height = 0;
        int width = 0;
    };

    struct Row;
    static const std::vector<Row>& rows();

    Values _values;
    mutable Values _stored; // as this object last saw them in the file
};
