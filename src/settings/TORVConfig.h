#pragma once

#include <QObject>
#include <QString>

#include <atomic>
#include <memory>
#include <mutex>

class QSettings;
class QVariant;

/**
 * The one door to the user's persistent settings, the INI file "<home>/.config/Halmera/TORV3D.conf" with Qt's own chain
 * of fall-backs behind it. It owns no settings. It owns the right to the file (one borrower at a time), the names of
 * groups and keys, and the switch to another user's file.
 *
 * A borrower calls `get()`, `beginGroup` of its own group, reads or writes, `endGroup`, `release()`, all on one thread.
 * In between it only moves values between the file and locals: a call that borrows again (directly, or from a slot that
 * a widget runs when it is given a value) would wait for itself for ever, which an assertion turns into an end of the
 * process.
 *
 * Qt can't keep a group called "GENERAL": it writes "[%General]", which the next process reads as group "General", and
 * reads a hand-written "[GENERAL]" as keys without a group. `get()` puts the keys of both forms back into "GENERAL". It
 * leaves alone what it may not write, so values of that group are read through `generalValue`.
 *
 * Thread: `instance`, `get` and `release` from any thread. `destroy`, `getSettingsPath`, `changeUser` and `restoreUser`
 * on the main thread, at moments when nobody borrows. `copy` from any thread that holds no settings.
 */
class TORVConfig final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVConfig)

public:
    // Names of presets
    static const QString VALUE_DEFAULT; ///< the built-in preset
    static const QString VALUE_CUSTOM;  ///< the current state that has no name

    static const QString GENERAL_GROUP;
    static const QString GENERAL_CLOCK;
    static const QString GENERAL_UNITS;
    static const QString GENERAL_LATLON_UNITS;
    static const QString GENERAL_GEOLAYER_URL;
    static const QString GENERAL_DATA3D_URL;
    static const QString GENERAL_DATA2D_URL;
    static const QString GENERAL_VERTICALSCALING; ///< in no file: the vertical scale stands under "verticalscale"

    static const QString PRODUCT_GROUP;
    static const QString PRODUCT_RENDERING_TYPE;
    static const QString PRODUCT_SURFACE_ARRAY;
    static const QString PRODUCT_SURFACE_VALUE;
    static const QString PRODUCT_SURFACE_OPACITY;
    static const QString PRODUCT_VOLUME_VALUE_LOW;
    static const QString PRODUCT_VOLUME_OPACITY_LOW;
    static const QString PRODUCT_VOLUME_VALUE_HIGH;
    static const QString PRODUCT_VOLUME_OPACITY_HIGH;

    static const QString HELP_GROUP; ///< the help menu reads this group through settings of its own
    static const QString HELP_COMMAND;
    static const QString HELP_FILE;

    // Window geometry: "...pos" holds QWidget::saveGeometry, "...expanded" whether the expand button is checked.
    static const QString DIALOG_GROUP;
    static const QString DIALOG_MAINWINDOW_POS;
    static const QString DIALOG_MAINWINDOW_STATE; ///< QMainWindow::saveState: where the panels are
    static const QString DIALOG_CURSORTOOL_POS;
    static const QString DIALOG_CURSORTOOL_EXPANDED;
    static const QString DIALOG_PRODUCTINFO_POS;
    static const QString DIALOG_PRODUCTINFO_EXPANDED;
    static const QString DIALOG_EXTRAWIN_POS;
    static const QString DIALOG_NIGHTMODE; ///< whether the windows are those of the night

    static const QString DISPLAY_STATE_GROUP;
    static const QString DISPLAY_STATE_ARRAY;
    static const QString DISPLAY_STATE_NAME;
    static const QString DISPLAY_STATE_LAYER_VISIBLE;
    static const QString DISPLAY_STATE_LAYER_OPACITY;

    static const QString VIEW_ANGLE_GROUP;
    static const QString VIEW_ANGLE_ARRAY;
    static const QString VIEW_ANGLE_NAME;
    static const QString VIEW_ANGLE_CAMPOS_X;
    static const QString VIEW_ANGLE_CAMPOS_Y;
    static const QString VIEW_ANGLE_CAMPOS_Z;
    static const QString VIEW_ANGLE_CAMDIR_X;
    static const QString VIEW_ANGLE_CAMDIR_Y;
    static const QString VIEW_ANGLE_CAMDIR_Z;

    ~TORVConfig() override;

    /// Made at the first call, and again at the first call after `destroy`.
    static TORVConfig* instance();
    static void destroy();

    /// Waits until nobody else borrows. The object stays this class's own and is valid until `release()`.
    QSettings* get();

    /// Writes to the file what has changed. A file that can't be read or written is reported once in the process: one
    /// warning in the log, one line in the history.
    void release();

    /// A value of the group "GENERAL" in whatever form it stands, in the user's own file or else in those of the
    /// system; invalid if there is none. To be called by the borrower, outside all groups.
    static QVariant generalValue(QSettings& settings, const QString& key);

    /// The user's configuration root, up to and including ".config"; empty if the settings file isn't in a directory of
    /// that name or if the path holds white space.
    static QString getSettingsPath();

    /// From the next `get()` on the settings are those of `user`. Nothing changes for a user without a home.
    static void changeUser(const QString& user);

    /// Back to where the settings were before `changeUser`, which must have been called.
    static void restoreUser();

    /// Copies the settings file into a directory and blocks for as long, half a minute at most; nobody can write the
    /// file meanwhile. @return whether the copy is there.
    bool copy(const QString& directory);

    /// The name of the built-in preset in the user's language.
    static QString defaultValueTranslated();

private:
    TORVConfig();

    static std::unique_ptr<TORVConfig> _instance; // under a mutex of its own

    // Not Qt's, which the thread sanitizer can't see.
    std::mutex _mutex;                    // held from get() to release()
    std::unique_ptr<QSettings> _settings; // guarded by _mutex, null while nobody borrows
    bool _isFailureReported = false;      // guarded by _mutex
    std::atomic<Qt::HANDLE> _borrower{nullptr};
    QString _rememberedPath; // main thread only
};
