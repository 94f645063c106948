#include "gui/TORVDataSelectionDialog.h"

#include "datalib/TORV3DTop.h"
#include "datalib/TORVDataType.h"
#include "gui/TORVPalette.h"
#include "utils/TORVDisplayMode.h"
#include "utils/TORVLog.h"

#include <QIcon>
#include <QPainter>
#include <QPixmap>
#include <QTreeWidget>

#include <algorithm>
#include <cassert>
#include <tuple>
#include <vector>

namespace
{

struct TypeName
{
    const char* type;
    const char* withProduct;
    int rawType;
};

const TypeName TypeNames[] = {
    {"Z", "CAPPI - Z", 2},
    {"W", "CAPPI - W", 4},
    {"R", "CAPPI - R", 13},
    {"V", "CAPPI - V", 3},
};

const TypeName* findType(const QString& type)
{
    const auto found = std::find_if(std::begin(TypeNames), std::end(TypeNames), [&type](const TypeName& name) {
        return type == QLatin1String(name.type) || type == QLatin1String(name.withProduct);
    });
    return found == std::end(TypeNames) ? nullptr : found;
}

// The columns of a file's item that hold its four values; the first column is the one that is seen.
enum ValueColumn : int
{
    COLUMN_SITE = 1,
    COLUMN_PRODUCT = 2,
    COLUMN_CONFIGURATION = 3,
    COLUMN_TIME = 4
};

QString valueOf(const QTreeWidgetItem& item, ValueColumn column)
{
    return item.data(column, Qt::UserRole).toString();
}

bool isSelectable(const QTreeWidgetItem* item)
{
    return item && (item->flags() & Qt::ItemIsSelectable) != 0;
}

QPixmap inColor(QPixmap pixmap, const QColor& color)
{
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), color);
    return pixmap;
}

// The dialog is modal, so the mode doesn't change while it is open.
QIcon iconOf(const char* name)
{
    const bool isNight = TORVDisplayMode::isNight();
    const QString stem = QStringLiteral(":/icons/%1_%2")
                             .arg(QLatin1String(name), isNight ? QLatin1String("night") : QLatin1String("day"));
    const QColor onSelection = TORVPalette::instance().color(QStringLiteral("on_select"), isNight);
    QIcon icon;
    for (const char* const scale : {".png", "@1.5x.png", "@2x.png"}) {
        const QPixmap pixmap(stem + QLatin1String(scale));
        if (!pixmap.isNull()) {
            icon.addPixmap(pixmap);
            icon.addPixmap(inColor(pixmap, onSelection), QIcon::Selected);
        }
    }
    return icon;
}

// In the order of the tree. Leaves whose type has no name are left out.
std::vector<TORVFileLeaf::Ptr> knownLeaves(const TORV3DTop& top)
{
    const QString all = QStringLiteral("*");
    const TORVDirTop::LeavesPtr leaves = top.findLeaves(all, all, all, all);
    std::vector<TORVFileLeaf::Ptr> known;
    known.reserve(static_cast<std::size_t>(leaves->size()));
    for (const TORVDirectory::Ptr& node : *leaves) {
        const TORVFileLeaf::Ptr leaf = boost::static_pointer_cast<TORVFileLeaf>(node);
        if (TORVDataSelectionDialog::isKnownType(leaf->getConfiguration())) {
            known.push_back(leaf);
        }
    }
    const int unknown = leaves->size() - static_cast<int>(known.size());
    if (unknown > 0) {
        TORVLog::Instance()->logWarning(
            QStringLiteral("Volumes of an unknown data type, not offered for selection: %1").arg(unknown));
    }
    const auto places = [](const TORVFileLeaf& leaf) {
        return std::make_tuple(leaf.getSite(), leaf.getProduct(), leaf.getConfiguration(), leaf.getTime());
    };
    std::sort(known.begin(), known.end(), [&places](const TORVFileLeaf::Ptr& left, const TORVFileLeaf::Ptr& right) {
        return places(*left) < places(*right);
    });
    return known;
}

QTreeWidgetItem* makeFolderItem(const QString& text, const QIcon& icon)
{
    auto* const item = new QTreeWidgetItem(QStringList(text));
    item->setIcon(0, icon);
    item->setFlags(Qt::ItemIsEnabled);
    return item;
}

} // namespace

TORVDataSelectionDialog::TORVDataSelectionDialog(const TORVDataStore::Ptr& dataStore,
                                                 const TORVDataFrame::CPtr& currentFrame, QWidget* parent)
    : QDialog(parent)
{
    assert(dataStore);
    assert(dataStore->getDirTop3d());
    setupUi(this);
    if (currentFrame && currentFrame->getData3d()) {
        const TORVFileLeaf& leaf = *currentFrame->getData3d();
        _site = leaf.getSite();
        _product = leaf.getProduct();
        _configuration = leaf.getConfiguration();
        _time = leaf.getTime();
    }
    makeTree(*dataStore->getDirTop3d());
    connect(treeWidget, &QTreeWidget::itemActivated, this, &TORVDataSelectionDialog::itemSelected);
    connect(treeWidget, &QTreeWidget::currentItemChanged, this, &TORVDataSelectionDialog::itemChanged);
    connect(okButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancelButton, &QPushButton::clicked, this, &QDialog::reject);
    itemChanged(treeWidget->currentItem(), nullptr);
}

TORVDataSelectionDialog::~TORVDataSelectionDialog() = default;

// The items enter the widget as whole branches: one by one, each would be laid out.
void TORVDataSelectionDialog::makeTree(const TORV3DTop& top)
{
    const QIcon siteIcon = iconOf("site");
    const QIcon productIcon = iconOf("layer_3dproduct");
    const QIcon timeIcon = iconOf("clock");
    QList<QTreeWidgetItem*> sites;
    QTreeWidgetItem* product = nullptr;
    QTreeWidgetItem* active = nullptr;
    TORVFileLeaf::Ptr previous;
    for (const TORVFileLeaf::Ptr& leaf : knownLeaves(top)) {
        const bool isNewSite = !previous || leaf->getSite() != previous->getSite();
        if (isNewSite) {
            sites.append(makeFolderItem(leaf->getSite(), siteIcon));
        }
        if (isNewSite || leaf->getProduct() != previous->getProduct() ||
            leaf->getConfiguration() != previous->getConfiguration()) {
            product = makeFolderItem(torvTypeToName(leaf->getConfiguration()), productIcon);
            sites.last()->addChild(product);
        }
        QTreeWidgetItem* const file = makeFileItem(*leaf);
        file->setIcon(0, timeIcon);
        product->addChild(file);
        active = isActive(*file) ? file : active;
        previous = leaf;
    }
    treeWidget->addTopLevelItems(sites);
    if (active) {
        treeWidget->setCurrentItem(active);
    } else if (sites.size() == 1) {
        sites.first()->setExpanded(true);
    }
}

QTreeWidgetItem* TORVDataSelectionDialog::makeFileItem(const TORVFileLeaf& leaf)
{
    auto* const item = new QTreeWidgetItem(QStringList(leaf.getTime()));
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren);
    item->setData(COLUMN_SITE, Qt::UserRole, leaf.getSite());
    item->setData(COLUMN_PRODUCT, Qt::UserRole, leaf.getProduct());
    item->setData(COLUMN_CONFIGURATION, Qt::UserRole, leaf.getConfiguration());
    item->setData(COLUMN_TIME, Qt::UserRole, leaf.getTime());
    return item;
}

bool TORVDataSelectionDialog::isActive(const QTreeWidgetItem& item) const
{
    return valueOf(item, COLUMN_SITE) == _site && valueOf(item, COLUMN_PRODUCT) == _product &&
           valueOf(item, COLUMN_CONFIGURATION) == _configuration && valueOf(item, COLUMN_TIME) == _time;
}

// Only now the tree knows how much of it can be seen.
void TORVDataSelectionDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (const QTreeWidgetItem* const item = treeWidget->currentItem()) {
        treeWidget->scrollToItem(item, QAbstractItemView::PositionAtCenter);
    }
    treeWidget->setFocus();
}

void TORVDataSelectionDialog::itemSelected(QTreeWidgetItem* item, int /*column*/)
{
    if (isSelectable(item)) {
        done(Accepted);
    }
}

void TORVDataSelectionDialog::itemChanged(QTreeWidgetItem* current, QTreeWidgetItem* /*previous*/)
{
    okButton->setEnabled(isSelectable(current));
}

// Selected is what is current, unless the user has taken the selection back by Ctrl.
void TORVDataSelectionDialog::done(int result)
{
    if (result == Accepted) {
        const QList<QTreeWidgetItem*> selected = treeWidget->selectedItems();
        const QTreeWidgetItem* const item = selected.isEmpty() ? treeWidget->currentItem() : selected.first();
        if (isSelectable(item)) {
            _site = valueOf(*item, COLUMN_SITE);
            _product = valueOf(*item, COLUMN_PRODUCT);
            _configuration = valueOf(*item, COLUMN_CONFIGURATION);
            _time = valueOf(*item, COLUMN_TIME);
        }
    }
    QDialog::done(result);
}

bool TORVDataSelectionDialog::isKnownType(const QString& type)
{
    return findType(type) != nullptr;
}

QString TORVDataSelectionDialog::torvTypeToName(const QString& type)
{
    const TypeName* const name = findType(type);
    if (!name) {
        TORVLog::Instance()->logError(QStringLiteral("TORVDataSelectionDialog::torvTypeToName(): Unknown data type."));
    }
    assert(name);
    return TORVDataType(name->rawType).getQuantityName();
}
