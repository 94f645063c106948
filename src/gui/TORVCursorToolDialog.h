#pragma once

#include "datalib/TORVFile.h"
#include "gui/TORVCursorReading.h"
#include "gui/TORVToolDialogInterface.h"
#include "utils/TORVCoordinate.h"
#include "utils/TORVGeoProjection.h"
#include "utils/TORVPoint3D.h"

#include <QDialog>

#include <memory>
#include <optional>

class QGraphicsOpacityEffect;
class TORVDialogParentInterface;
class TORVPointWidget;

namespace Ui
{
class TORVCursorToolDialog;
}

/**
 * The measuring tool: what the volume holds at the 3-D cursor, where that is, and how it lies from the radar or from a
 * home point of the user's own. It gives the renderer's 3-D cursor its box, its home point and its colour, and has it
 * on while the dialog is on show and there is a volume.
 *
 * The window passes on each drag of the cursor (`newCursorPosition`), each change of data or settings (`updateValues`)
 * and a change of site (`resetCursor`). `finished` tells that the user has closed the dialog, which is hidden then.
 *
 * A home point of the user's own is a place on the Earth: where the new volume of another radar holds it, it stays.
 *
 * Thread: main thread only.
 * Ownership: the parent interface outlives the dialog.
 */
class TORVCursorToolDialog final : public QDialog, public TORVToolDialogInterface
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVCursorToolDialog)

public:
    /**
     * The window need not be finished: it is asked for nothing but its settings yet.
     * @param parent  the window with the scene, in whose lower right corner the dialog stands the first time; the scene
     *                is its child "sceneWidget", or else the window itself
     */
    TORVCursorToolDialog(QWidget* parent, TORVDialogParentInterface* window);
    ~TORVCursorToolDialog() override;

    void showDialog() override;
    void hideDialog() override;
    bool dialogVisible() const override;

    /// Without a volume no figure is shown and the 3-D cursor is off.
    void updateValues() override;

    /// The 3-D cursor gets the box of the volume on show, which there must be, and goes to its radar.
    void resetCursor();

    /// The next update that finds a volume does the same.
    void forceReset();

    /// @param point  as the 3-D cursor tells it: z as tall as the scene shows it
    void newCursorPosition(const TORVPoint3D& point);

    /// Shows no figure until the next update.
    void invalidateValues();

    /// Writes where the dialog stands and whether it is unfolded; nothing where it is not on show.
    void storePosition();
    void restorePosition();

public Q_SLOTS:
    void on_expandButton_toggled(bool expanded);
    void on_homeCombo_currentIndexChanged(int index);
    void on_homePointButton_pressed();
    void done(int result) override;

protected:
    void changeEvent(QEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    // The entries of the combo box.
    enum Home : int
    {
        RADAR_SITE = 0,
        CUSTOM = 1
    };

    // What there is to tell of the cursor's place.
    struct Place
    {
        std::optional<unsigned int> sample;
        std::optional<double> altitude; // metres
        std::optional<TORVCoordinate> location;
        std::optional<double> ground; // metres
    };

    TORVFile::CPtr currentFile() const;
    TORVPointWidget* pointWidget() const;
    double verticalScale() const;
    TORVPoint3D fromScene(const TORVPoint3D& point) const;

    void enableControls(bool on);
    void switchCursor(bool on);
    void render();
    void placePointWidget(const TORVFile& file);
    void adoptSite(const TORVFile& file);
    void moveCustomHome(const TORVFile& file);
    TORVPoint3D homePoint(const TORVFile& file) const;
    void takeCursorAsHome();
    void selectHome(Home home);

    void showReadings(const TORVFile::CPtr& file3d);
    Place placeOfCursor(const TORVFile& file) const;
    QColor colorOf(const TORVDataType& type, std::optional<unsigned int> sample) const;
    void updateRightSide(const TORVDataType& type, const Place& place, const QColor& color);
    void updateLeftSide(const TORVCursorReading::FromHome& result, double homeAltitude);
    void clearLeftSide();
    void paintSwatch(const QColor& color);
    void dimSwatch();
    void reserveWidths();
    void moveToDefaultPlace();

    std::unique_ptr<Ui::TORVCursorToolDialog> _ui;
    TORVDialogParentInterface* _window;
    QGraphicsOpacityEffect* _dimming = nullptr; // the swatch's
    TORVPoint3D _cursor;                        // true metres, as is the home point
    std::optional<TORVPoint3D> _customHome;
    TORVGeoProjection::CPtr _projection; // that the custom home point lies in
    bool _forceReset = true;
    bool _isSwatchEmpty = true;
    bool _isPlaced = false;
};
