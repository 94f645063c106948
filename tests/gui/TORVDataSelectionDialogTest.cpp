#include "gui/TORVDataSelectionDialog.h"

#include "../datalib/StoreTest.h"
#include "DialogControls.h"

#include <QSignalSpy>
#include <QTreeWidget>

namespace
{

constexpr const char* Noon = "260714120000";
constexpr const char* Later = "260714120500";

class TORVDataSelectionDialogTest : public StoreTest
{
protected:
    using Dialog = TORVDataSelectionDialog;

    // Codes of the header that the base has no names for.
    static constexpr Quantity W = static_cast<Quantity>(4);
    static constexpr Quantity R = static_cast<Quantity>(13);

    /// Two times of reflectivity and one of velocity of one site, and what else the test has added.
    void openWithVolumes()
    {
        add3d(Later, volume("HALMERA"));
        add3d(Noon, volume("HALMERA"));
        add3d(Noon, volume("HALMERA", V));
        open();
    }

    TORVDataFrame::CPtr frame(const char* key) const
    {
        return boost::make_shared<TORVDataFrame>(store, "HALMERA", key, "CAPPI", "Z", QString(), 180, 1.5);
    }

    /// Every item, a line each, indented by its level.
    static QStringList linesOf(const Dialog& dialog)
    {
        QStringList lines;
        for (QTreeWidgetItemIterator item(dialog.treeWidget); *item; ++item) {
            QString indent;
            for (const QTreeWidgetItem* above = (*item)->parent(); above; above = above->parent()) {
                indent += QLatin1String("  ");
            }
            lines << indent + (*item)->text(0);
        }
        return lines;
    }

    static QTreeWidgetItem* item(const Dialog& dialog, const char* text)
    {
        const auto found = dialog.treeWidget->findItems(QLatin1String(text), Qt::MatchExactly | Qt::MatchRecursive);
        return found.isEmpty() ? nullptr : found.first();
    }

    static QStringList valuesOf(const Dialog& dialog)
    {
        return {dialog.getSite(), dialog.getProduct(), dialog.getConfiguration(), dialog.getTime()};
    }

    static void doubleClick(const Dialog& dialog, QTreeWidgetItem* item)
    {
        dialog.treeWidget->scrollToItem(item);
        QWidget* const viewport = dialog.treeWidget->viewport();
        const QPoint place = dialog.treeWidget->visualItemRect(item).center();
        QTest::mouseClick(viewport, Qt::LeftButton, {}, place);
        QTest::mouseDClick(viewport, Qt::LeftButton, {}, place);
    }

    const QStringList noonOfReflectivity{"HALMERA", "CAPPI", "Z", Noon};
    const QStringList laterOfReflectivity{"HALMERA", "CAPPI", "Z", Later};
};

} // namespace

TEST_F(TORVDataSelectionDialogTest, SaysWhatItIsAndWhatItsControlsDo)
{
    openWithVolumes();
    const Dialog dialog(store, {}, nullptr);
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("3D data selector"));
    expectControlsNamed(dialog);
}

// The keys of a search would put "HAL-2/..." before "HAL/...", since a hyphen comes before a slash.
TEST_F(TORVDataSelectionDialogTest, ListsSitesQuantitiesAndTimesInTheOrderOfTheTree)
{
    add3d(Later, volume("HAL"));
    add3d(Noon, volume("HAL"));
    add3d(Noon, volume("HAL", V));
    add3d(Noon, volume("HAL", W));
    add3d(Noon, volume("HAL", R));
    add3d(Noon, volume("HAL-2"));
    open();
    const Dialog dialog(store, {}, nullptr);
    EXPECT_EQ(linesOf(dialog),
              QStringList({"HAL", "  Rainfall rate", "    260714120000", "  Radial velocity", "    260714120000",
                           "  Spectrum width", "    260714120000", "  Reflectivity", "    260714120000",
                           "    260714120500", "HAL-2", "  Reflectivity", "    260714120000"}));
}

TEST_F(TORVDataSelectionDialogTest, ShowsOneColumnWithoutAHeader)
{
    openWithVolumes();
    const Dialog dialog(store, {}, nullptr);
    EXPECT_EQ(dialog.treeWidget->columnCount(), 1);
    EXPECT_TRUE(dialog.treeWidget->isHeaderHidden());
}

TEST_F(TORVDataSelectionDialogTest, LetsOnlyFilesBeSelected)
{
    openWithVolumes();
    const Dialog dialog(store, {}, nullptr);
    for (QTreeWidgetItemIterator item(dialog.treeWidget); *item; ++item) {
        const bool isFile = (*item)->text(0).startsWith(QLatin1String("26"));
        EXPECT_EQ((*item)->flags().testFlag(Qt::ItemIsSelectable), isFile) << qUtf8Printable((*item)->text(0));
        EXPECT_TRUE((*item)->flags().testFlag(Qt::ItemIsEnabled));
    }
}

TEST_F(TORVDataSelectionDialogTest, KeepsTheFourValuesOfAFileInItsItem)
{
    openWithVolumes();
    const Dialog dialog(store, {}, nullptr);
    const QTreeWidgetItem* const file = item(dialog, Later);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->data(1, Qt::UserRole).toString(), QStringLiteral("HALMERA"));
    EXPECT_EQ(file->data(2, Qt::UserRole).toString(), QStringLiteral("CAPPI"));
    EXPECT_EQ(file->data(3, Qt::UserRole).toString(), QStringLiteral("Z"));
    EXPECT_EQ(file->data(4, Qt::UserRole).toString(), QString(Later));
}

TEST_F(TORVDataSelectionDialogTest, OpensOnTheVolumeOnShow)
{
    openWithVolumes();
    const Dialog dialog(store, frame(Later), nullptr);
    EXPECT_EQ(valuesOf(dialog), laterOfReflectivity);
    EXPECT_EQ(dialog.treeWidget->currentItem(), item(dialog, Later));
    EXPECT_TRUE(dialog.okButton->isEnabled());
}

TEST_F(TORVDataSelectionDialogTest, ShowsTheCurrentItem)
{
    for (int minute = 10; minute < 50; ++minute) {
        add3d(QStringLiteral("2607141120%1").arg(minute), volume("HALMERA"));
    }
    openWithVolumes();
    Dialog dialog(store, frame(Later), nullptr);
    dialog.show();
    QCoreApplication::processEvents();
    const QRect place = dialog.treeWidget->visualItemRect(dialog.treeWidget->currentItem());
    EXPECT_TRUE(dialog.treeWidget->viewport()->rect().contains(place));
}

TEST_F(TORVDataSelectionDialogTest, HasNothingToAcceptAtFirstWhenNothingIsOnShow)
{
    openWithVolumes();
    Dialog dialog(store, {}, nullptr);
    dialog.show();
    EXPECT_EQ(valuesOf(dialog), QStringList({"", "", "", ""}));
    EXPECT_TRUE(dialog.treeWidget->selectedItems().isEmpty());
    EXPECT_FALSE(dialog.okButton->isEnabled());
}

TEST_F(TORVDataSelectionDialogTest, TakesAFrameWithoutAVolumeForNothingOnShow)
{
    openWithVolumes();
    const Dialog dialog(store, boost::make_shared<TORVDataFrame>(store), nullptr);
    EXPECT_EQ(valuesOf(dialog), QStringList({"", "", "", ""}));
    EXPECT_FALSE(dialog.okButton->isEnabled());
}

TEST_F(TORVDataSelectionDialogTest, CanBeAcceptedWhileAFileIsCurrent)
{
    openWithVolumes();
    const Dialog dialog(store, {}, nullptr);
    dialog.treeWidget->setCurrentItem(item(dialog, "HALMERA"));
    EXPECT_FALSE(dialog.okButton->isEnabled());
    dialog.treeWidget->setCurrentItem(item(dialog, Noon));
    EXPECT_TRUE(dialog.okButton->isEnabled());
    dialog.treeWidget->setCurrentItem(item(dialog, "Reflectivity"));
    EXPECT_FALSE(dialog.okButton->isEnabled());
}

TEST_F(TORVDataSelectionDialogTest, OkTakesTheSelectedFile)
{
    openWithVolumes();
    Dialog dialog(store, frame(Noon), nullptr);
    dialog.show();
    dialog.treeWidget->setCurrentItem(item(dialog, Later));
    dialog.okButton->click();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(valuesOf(dialog), laterOfReflectivity);
}

TEST_F(TORVDataSelectionDialogTest, OkTakesTheCurrentFileWhoseSelectionWasTakenBack)
{
    openWithVolumes();
    const Dialog dialog(store, frame(Noon), nullptr);
    dialog.treeWidget->setCurrentItem(item(dialog, Later));
    dialog.treeWidget->clearSelection();
    dialog.okButton->click();
    EXPECT_EQ(valuesOf(dialog), laterOfReflectivity);
}

TEST_F(TORVDataSelectionDialogTest, DoubleClickOnASiteAcceptsNothing)
{
    openWithVolumes();
    Dialog dialog(store, {}, nullptr);
    const QSignalSpy finished(&dialog, &QDialog::finished);
    dialog.show();
    doubleClick(dialog, item(dialog, "HALMERA"));
    doubleClick(dialog, item(dialog, "Reflectivity"));
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(finished.count(), 0);
}

TEST_F(TORVDataSelectionDialogTest, DoubleClickOnAFileAcceptsIt)
{
    openWithVolumes();
    Dialog dialog(store, frame(Noon), nullptr);
    const QSignalSpy finished(&dialog, &QDialog::finished);
    dialog.show();
    doubleClick(dialog, item(dialog, Later));
    ASSERT_EQ(finished.count(), 1);
    EXPECT_EQ(finished.first().first().toInt(), 1);
    EXPECT_EQ(valuesOf(dialog), laterOfReflectivity);
}

TEST_F(TORVDataSelectionDialogTest, ReturnAcceptsACurrentFileOnce)
{
    openWithVolumes();
    Dialog dialog(store, frame(Noon), nullptr);
    const QSignalSpy finished(&dialog, &QDialog::finished);
    dialog.show();
    dialog.treeWidget->setCurrentItem(item(dialog, Later));
    QTest::keyClick(dialog.treeWidget, Qt::Key_Return);
    EXPECT_EQ(finished.count(), 1);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(valuesOf(dialog), laterOfReflectivity);
}

TEST_F(TORVDataSelectionDialogTest, ReturnOnASiteAcceptsNothing)
{
    openWithVolumes();
    Dialog dialog(store, frame(Noon), nullptr);
    dialog.show();
    dialog.treeWidget->setCurrentItem(item(dialog, "HALMERA"));
    QTest::keyClick(dialog.treeWidget, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible());
}

TEST_F(TORVDataSelectionDialogTest, CancelAndEscapeKeepTheVolumeOnShow)
{
    openWithVolumes();
    for (const bool isByKey : {false, true}) {
        Dialog dialog(store, frame(Noon), nullptr);
        dialog.show();
        dialog.treeWidget->setCurrentItem(item(dialog, Later));
        if (isByKey) {
            QTest::keyClick(dialog.treeWidget, Qt::Key_Escape);
        } else {
            dialog.cancelButton->click();
        }
        EXPECT_FALSE(dialog.isVisible());
        EXPECT_EQ(dialog.result(), QDialog::Rejected);
        EXPECT_EQ(valuesOf(dialog), noonOfReflectivity);
    }
}

TEST_F(TORVDataSelectionDialogTest, LeavesOutVolumesWhoseQuantityHasNoName)
{
    add3d(Noon, volume("HALMERA", NONE));
    add3d(Noon, volume("NOWHERE", NONE));
    openWithVolumes();
    ASSERT_EQ(store->getDirTop3d()->findLeaves("*", "*", "*", "*")->size(), 5);
    startLog();
    const Dialog dialog(store, {}, nullptr);
    EXPECT_EQ(linesOf(dialog), QStringList({"HALMERA", "  Radial velocity", "    260714120000", "  Reflectivity",
                                            "    260714120000", "    260714120500"}));
    EXPECT_EQ(logged("Volumes of an unknown data type"),
              QStringList("W: Volumes of an unknown data type, not offered for selection: 2"));
}

TEST_F(TORVDataSelectionDialogTest, IsEmptyForAnEmptyDirectory)
{
    open();
    const Dialog dialog(store, {}, nullptr);
    EXPECT_EQ(linesOf(dialog), QStringList());
    EXPECT_FALSE(dialog.okButton->isEnabled());
}

TEST_F(TORVDataSelectionDialogTest, KeepsAFileThatGoesWhileItIsOpen)
{
    add3d(Noon, volume("HALMERA"));
    const QString path = add3d(Later, volume("HALMERA"));
    open();
    Dialog dialog(store, frame(Noon), nullptr);
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(waitFor([this] { return !leaf3d(Later); }));
    dialog.treeWidget->setCurrentItem(item(dialog, Later));
    dialog.okButton->click();
    EXPECT_EQ(valuesOf(dialog), laterOfReflectivity);
}

TEST_F(TORVDataSelectionDialogTest, StopsWithoutAStoreOrADirectory)
{
    EXPECT_DEATH(Dialog({}, {}, nullptr), "dataStore");
    EXPECT_DEATH(Dialog(boost::make_shared<TORVDataStore>(nullptr), {}, nullptr), "getDirTop3d");
}

TEST(TORVDataSelectionDialogNameTest, KnowsEachQuantityByTwoTexts)
{
    const QPair<const char*, const char*> rows[] = {
        {"Z", "Reflectivity"},           {"CAPPI - Z", "Reflectivity"},    {"W", "Spectrum width"},
        {"CAPPI - W", "Spectrum width"}, {"R", "Rainfall rate"},           {"CAPPI - R", "Rainfall rate"},
        {"V", "Radial velocity"},        {"CAPPI - V", "Radial velocity"},
    };
    for (const auto& [type, name] : rows) {
        EXPECT_TRUE(TORVDataSelectionDialog::isKnownType(type)) << type;
        EXPECT_EQ(TORVDataSelectionDialog::torvTypeToName(type), QString(name)) << type;
    }
}

TEST(TORVDataSelectionDialogNameTest, KnowsNothingElse)
{
    for (const char* const type : {"", "z", "CAPPI", "CAPPI - ", "MAX - Z", "ZZ", "*"}) {
        EXPECT_FALSE(TORVDataSelectionDialog::isKnownType(type)) << type;
    }
    EXPECT_FALSE(TORVDataSelectionDialog::isKnownType(QString()));
}

TEST(TORVDataSelectionDialogNameTest, StopsAtATypeThatIsNotKnown)
{
    const auto nameIt = [] {
        LogFile(TORVLog::LEVEL_ERROR); // after it errors go to the console
        TORVDataSelectionDialog::torvTypeToName(QStringLiteral("X"));
    };
    EXPECT_DEATH(nameIt(), "TORVDataSelectionDialog::torvTypeToName\\(\\): Unknown data type\\.");
}
