#pragma once

#include "datalib/TORVFile.h"
#include "ui_MainWindow.h"

#include <QMainWindow>
#include <QStringList>

#include <vtkNew.h>

#include <memory>

class QLabel;
class TORVDirectoryWatcher;
class TORVPictureJob;
class TORVRenderer;
class vtkGenericOpenGLRenderWindow;

/**
 * The main window: the scene, what is shown in it, and what happened so far. It shows the newest volume of reflectivity
 * and follows its site as new ones arrive.
 *
 * Thread: main thread only.
 * Ownership: the widgets are the form's; renderer and render window are this object's.
 */
class TORVGUI final : public QMainWindow, public Ui_MainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVGUI)

public:
    TORVGUI();
    ~TORVGUI() override;

private Q_SLOTS:
    void historyAdd(QString const& text);
    void historyAdd(QStringList const& lines);
    void statusAdd(QString const& text, int timeout);
    void showPicture();
    void followNewest();

private:
    void fillBars();
    void connectLog();
    void initializeVTK();
    void openDirectory();
    void startPicture();
    TORVFile::CPtr newestOfShownSite() const;

    QLabel* _label_dataId = nullptr;
    QLabel* _surfaceKey = nullptr;
    vtkNew<vtkGenericOpenGLRenderWindow> _renderWindow;
    std::unique_ptr<TORVRenderer> _renderer;
    std::unique_ptr<TORVDirectoryWatcher> _watcher;
    std::unique_ptr<TORVPictureJob> _picture; // null when none is being made
    TORVFile::CPtr _shown;                    // null when nothing is
};
