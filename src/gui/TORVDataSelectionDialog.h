#pragma once

#include "datalib/TORVDataFrame.h"
#include "datalib/TORVDataStore.h"
#include "ui_TORVDataSelectionDialog.h"

#include <QDialog>
#include <QString>

class TORV3DTop;

/**
 * The tree of all volumes on the disk, by site and quantity, in which the user picks one. It shows what there was when
 * it was made; a file may have gone by the time that it is picked.
 *
 * After `exec` has returned `QDialog::Accepted` the four values tell which file it was. Before, and after a cancel,
 * they are those of the volume on show, or null.
 *
 * Thread: main thread only.
 * Ownership: the widgets are the form's. Store and frame are looked at by the constructor alone.
 */
class TORVDataSelectionDialog final : public QDialog, public Ui_TORVDataSelectionDialogClass
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVDataSelectionDialog)

public:
    /**
     * @param dataStore     not null; has a directory of volumes
     * @param currentFrame  what is on show, null for nothing
     */
    TORVDataSelectionDialog(const TORVDataStore::Ptr& dataStore, const TORVDataFrame::CPtr& currentFrame,
                            QWidget* parent);
    ~TORVDataSelectionDialog() override;

    QString getSite() const { return _site; }
    QString getProduct() const { return _product; }
    QString getConfiguration() const { return _configuration; }
    QString getTime() const { return _time; } ///< the volume's key of time, `TORVFileLeaf::getTime`

    /// The name of the quantity that a type stands for, "Z" and "CAPPI - Z" alike, in the user's language. A type that
    /// isn't known stops the process.
    static QString torvTypeToName(const QString& type);

    static bool isKnownType(const QString& type);

public Q_SLOTS:
    /// With 1 the four values become those of the selected file.
    void done(int result) override;

protected:
    void showEvent(QShowEvent* event) override;

private Q_SLOTS:
    void itemSelected(QTreeWidgetItem* item, int column);
    void itemChanged(QTreeWidgetItem* current, QTreeWidgetItem* previous);

private:
    void makeTree(const TORV3DTop& top);
    static QTreeWidgetItem* makeFileItem(const TORVFileLeaf& leaf);
    bool isActive(const QTreeWidgetItem& item) const;

    QString _site;
    QString _product;
    QString _configuration;
    QString _time;
};
