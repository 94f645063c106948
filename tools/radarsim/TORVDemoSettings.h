#pragma once

#include <QString>

#include <vector>

class TORVTerrainModel;
struct TORVSiteInfo;

/**
 * The settings files of the demo installation, in the places where the viewer looks for them under a home directory:
 * its own settings, colour scales, styles of the scene by day and by night, and landmarks.
 *
 * Each function answers an empty text, or in words why the file could not be written.
 *
 * Thread: main thread only (the settings classes of Qt share files between threads).
 */
class TORVDemoSettings final
{
public:
    /// `home` is made if it isn't there.
    explicit TORVDemoSettings(const QString& home);

    /// Directories and ways of showing each product; what else stands in the file stays.
    QString writeViewer(const QString& data3d, const QString& data2d, const QString& geo) const;

    /// The viewer starts live at that site, with presets of the scene and of the view. What the user has chosen since
    /// an earlier run stays.
    QString writeStart(const QString& site) const;

    QString writeColors() const;
    QString writeStyles() const;
    QString writeLandmarks(const std::vector<TORVSiteInfo>& sites, int count, const TORVTerrainModel& terrain) const;

    /// Where the file of that name stands.
    QString path(const QString& name) const;

private:
    QString _directory;
};
