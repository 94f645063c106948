#pragma once

#include "settings/TORVExportSettings.h"

#include <QMap>
#include <QString>
#include <QStringList>

#include <vector>

class TORV2DTop;
class TORV3DTop;

/**
 * What the service that renders pictures unattended produces. Its settings are a file of their own in the home of the
 * user that the service runs as, whose name the system's configuration tells; the viewer's own settings play no part.
 *
 * Width and height are in pixels, 1 to `TORVExportSettings::MaxSide`. Names of presets are "Default" in the file and
 * the translated word to the user.
 *
 * Thread: main thread only.
 */
class TORVBackgroundSettings final
{
public:
    enum Status : int
    {
        STATUS_WRITABLE = 0, ///< readable and writable
        STATUS_READABLE = 1, ///< readable only
        STATUS_NONE = 2      ///< neither; also where the user has no home
    };

    /// Of the service's user, loaded.
    TORVBackgroundSettings();

    /// Of that file, loaded. No path means a user without a home.
    explicit TORVBackgroundSettings(const QString& path);

    /// The first match of BG_USER=name in the service's start-up variables, or "torv3d".
    /// @param configurationDirectory  where the system keeps such files; empty if it doesn't
    static QString getBgUsername(const QString& configurationDirectory);
    static QString getBgUsername();

    /// Empty where the user has none.
    static QString getBgHomeDirectory();
    static QString getBgSettingsDirectory();
    static QString getBgSettingsFileName();

    /// Asked of the file itself. A file that isn't there is judged by the directory that it would be made in; nothing
    /// is created.
    Status status() const;

    void load();

    /// Writes what the file lacks and what was changed since this object last loaded or saved. Owner and rights of a
    /// file that is there stay where its directory can't be written; a new file can be read by everybody, since its
    /// owner isn't the one who needs it.
    /// @return whether the settings are in the file; if not, the log and the history say so
    bool save() const;

    /// Not activated, directory, size, and for each of the configurations the default flat product. Format and names of
    /// presets stay.
    void reset(const QStringList& configurations);

    /// In alphabetical order, each once.
    static QStringList getAllConfigurations(const TORV3DTop& volumes);
    static QStringList getAll2DProducts(const TORV2DTop& flatProducts);

    /// The flat product that goes with a configuration of volumes; the default one for a configuration that has none.
    QString get2DProduct(const QString& configuration) const;
    void set2DProduct(const QString& configuration, const QString& product);

    QString getFileName() const { return _path; }
    QString getOutputFileExtension() const { return TORVExportSettings::getOutputFileExtension(getOutputFormat()); }
    QString getOutputFormatString() const { return TORVExportSettings::getOutputFormatString(getOutputFormat()); }

    bool isActivated() const { return _values.activated; }
    void setActivated(bool activated) { _values.activated = activated; }
    QString getDirectory() const { return _values.directory; }
    void setDirectory(const QString& directory) { _values.directory = directory; }
    TORVExportSettings::OutputFormat getOutputFormat() const { return _values.outputFormat; }
    void setOutputFormat(TORVExportSettings::OutputFormat format) { _values.outputFormat = format; }
    QString getDisplayStateName() const;
    void setDisplayStateName(const QString& name);
    QString getViewAngleName() const;
    void setViewAngleName(const QString& name);
    int getHeight() const { return _values.height; }
    void setHeight(int height) { _values.height = height; }
    int getWidth() const { return _values.width; }
    void setWidth(int width) { _values.width = width; }

private:
    // Defaults and ranges stand in the table of fields.
    struct Values
    {
        bool activated = false;
        QString directory;
        TORVExportSettings::OutputFormat outputFormat = TORVExportSettings::FORMAT_TIFF;
        QString displayStateName;
        QString viewAngleName;
        int height = 0;
        int width = 0;
        QMap<QString, QString> products; // configuration of the volume to product of the flat file
    };

    struct Row;
    static const std::vector<Row>& rows();

    QString _path;
    Values _values;
    mutable Values _stored; // as this object last saw them in the file
};
