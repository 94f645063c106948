// The combo boxes of sites and products: what there is to choose from, and which entry stands for what is shown.

#include "datalib/TORV2DTop.h"
#include "datalib/TORV3DTop.h"
#include "datalib/TORVDataStore.h"
#include "gui/TORVDataSelectionDialog.h"
#include "gui/TORVGUI.h"
#include "gui/TORVProductKey.h"
#include "settings/TORVGeneralSettings.h"
#include "utils/TORVLog.h"

#include <algorithm>
#include <initializer_list>

namespace
{

void logHistory(const QString& text)
{
    TORVLog::Instance()->logHistory(text);
}

struct Entry
{
    QString text;
    QString data;

    bool operator==(const Entry& other) const { return text == other.text && data == other.data; }
};

// An open list is left alone as long as it is the same.
void setEntries(QComboBox* box, const QVector<Entry>& entries)
{
    QVector<Entry> present;
    for (int i = 0; i < box->count(); ++i) {
        present << Entry{box->itemText(i), box->itemData(i).toString()};
    }
    if (present == entries) {
        return;
    }
    box->clear();
    for (const Entry& entry : entries) {
        box->addItem(entry.text, entry.data);
    }
}

QVector<Entry> plainEntries(const QStringList& texts)
{
    QVector<Entry> entries;
    for (const QString& text : texts) {
        entries << Entry{text, QString()};
    }
    return entries;
}

// Volumes of other quantities can't be drawn.
QVector<Entry> productEntries(const QStringList& products)
{
    static QStringList reported;
    QVector<Entry> entries;
    for (const QString& product : products) {
        if (TORVDataSelectionDialog::isKnownType(product)) {
            entries << Entry{TORVDataSelectionDialog::torvTypeToName(product), product};
        } else if (!reported.contains(product)) {
            reported << product;
            TORVLog::Instance()->logWarning(QLatin1String("Product of an unknown data type left out: ") + product);
        }
    }
    return entries;
}

// The first of several that is there; -1 without any.
int firstOf(std::initializer_list<int> candidates)
{
    const auto found = std::find_if(candidates.begin(), candidates.end(), [](int index) { return index >= 0; });
    return found == candidates.end() ? -1 : *found;
}

int indexOfText(const QComboBox* box, const QString& text)
{
    return text.isEmpty() ? -1 : box->findText(text);
}

int indexOfData(const QComboBox* box, const QString& data)
{
    return data.isEmpty() ? -1 : box->findData(data);
}

} // namespace

void TORVGUI::updateAvailableSites()
{
    if (_genSettings->isLiveMode()) {
        listLiveSites();
        return;
    }
    setEntries(comboBox_radarSite, plainEntries(_dataFrame ? QStringList{_dataFrame->getSite()} : QStringList()));
    comboBox_radarSite->setCurrentIndex(comboBox_radarSite->count() - 1);
}

void TORVGUI::listLiveSites()
{
    const QString remembered = comboBox_radarSite->currentText();
    const auto top = _dataStore->getDirTop3d();
    setEntries(comboBox_radarSite, plainEntries(top ? top->listSites() : QStringList()));
    const TORVDataFrame::CPtr frame = askedFrame();
    const int index = firstOf({indexOfText(comboBox_radarSite, frame ? frame->getSite() : QString()),
                               indexOfText(comboBox_radarSite, remembered),
                               indexOfText(comboBox_radarSite, _genSettings->getLiveSite())});
    if (index < 0 && !remembered.isEmpty() && frame && frame->getData3d()) {
        logHistory(translate("App", "Site not available: %1").arg(remembered));
    }
    comboBox_radarSite->setCurrentIndex(index);
}

void TORVGUI::updateAvailableProducts()
{
    if (_genSettings->isLiveMode()) {
        listLiveProducts();
    } else {
        listMatchingProducts();
    }
}

void TORVGUI::listLiveProducts()
{
    const QString site = comboBox_radarSite->currentText();
    const QString remembered3d = comboBox_3DProduct->currentText();
    const QString remembered2d = comboBox_2DProduct->currentText();
    const auto top3d = _dataStore->getDirTop3d();
    const auto top2d = _dataStore->getDirTop2d();
    const bool isSite = !site.isEmpty();
    setEntries(comboBox_3DProduct,
               productEntries(top3d && isSite ? top3d->listProductsForSite(site, true) : QStringList()));
    setEntries(comboBox_2DProduct,
               plainEntries(top2d && isSite ? top2d->listProductsForSite(site, false) : QStringList()));
    const TORVDataFrame::CPtr frame = askedFrame();
    const bool isShown = frame && frame->getData3d();
    const QString product = frame ? TORVProductKey{frame->getProduct(), frame->getConfiguration()}.text() : QString();

    const int kept3d =
        firstOf({indexOfData(comboBox_3DProduct, product), indexOfText(comboBox_3DProduct, remembered3d)});
    if (kept3d < 0 && !remembered3d.isEmpty() && isShown) {
        TORVLog::Instance()->logHistory(
            QStringList{translate("App", "3d product not available:"), QLatin1String("- ") + remembered3d});
    }
    comboBox_3DProduct->setCurrentIndex(
        firstOf({kept3d, indexOfData(comboBox_3DProduct, _genSettings->getLiveProduct3D())}));

    const int kept2d = firstOf({indexOfText(comboBox_2DProduct, frame ? frame->getProduct2d() : QString()),
                                indexOfText(comboBox_2DProduct, remembered2d)});
    if (kept2d < 0 && !remembered2d.isEmpty() && isShown) {
        TORVLog::Instance()->logHistory(
            QStringList{translate("App", "2d product not available:"), QLatin1String("- ") + remembered2d});
    }
    comboBox_2DProduct->setCurrentIndex(
        firstOf({kept2d, indexOfText(comboBox_2DProduct, _genSettings->getLiveProduct2D())}));
}

// What the archive has of the time that is on show.
void TORVGUI::listMatchingProducts()
{
    const TORVFileLeaf::CPtr leaf = _dataFrame ? _dataFrame->getData3d() : TORVFileLeaf::Ptr();
    const auto top3d = _dataStore->getDirTop3d();
    const auto top2d = _dataStore->getDirTop2d();
    const int window = _genSettings->getTimeWindow();
    const QString remembered3d = comboBox_3DProduct->currentText();
    const QString remembered2d = comboBox_2DProduct->currentText();
    setEntries(comboBox_3DProduct,
               productEntries(leaf && top3d ? top3d->findAllMatchingProducts(leaf, window, true) : QStringList()));
    setEntries(comboBox_2DProduct,
               plainEntries(leaf && top2d ? top2d->findAllMatchingProducts(leaf, window, false) : QStringList()));
    if (!leaf) {
        return;
    }
    comboBox_3DProduct->setCurrentIndex(
        firstOf({indexOfData(comboBox_3DProduct,
                             TORVProductKey{_dataFrame->getProduct(), _dataFrame->getConfiguration()}.text()),
                 indexOfText(comboBox_3DProduct, remembered3d)}));
    comboBox_2DProduct->setCurrentIndex(firstOf(
        {indexOfText(comboBox_2DProduct, _dataFrame->getProduct2d()), indexOfText(comboBox_2DProduct, remembered2d)}));
}
