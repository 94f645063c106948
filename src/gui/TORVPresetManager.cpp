#include "gui/TORVPresetManager.h"

#include "gui/TORVDialogParentInterface.h"
#include "gui/TORVPalette.h"
#include "settings/TORVConfig.h"
#include "utils/TORVDisplayMode.h"
#include "utils/TORVLog.h"

#include <QCoreApplication>
#include <QEvent>
#include <QListWidget>
#include <QStyle>

#include <algorithm>

namespace
{

constexpr int DefaultRow = 0;
constexpr int NoRow = -1;

// The words that the combo boxes of presets hold beside the presets, in English and in the user's language.
QStringList reservedNames()
{
    return {TORVConfig::VALUE_DEFAULT,          TORVConfig::defaultValueTranslated(),
            TORVConfig::VALUE_CUSTOM,           QCoreApplication::translate("App", "Custom"),
            QStringLiteral("(Manage presets)"), QCoreApplication::translate("App", "(Manage presets)")};
}

bool isReserved(const QString& name)
{
    return reservedNames().contains(name, Qt::CaseInsensitive);
}

} // namespace

TORVPresetManager::TORVPresetManager(QWidget* parent, TORVDialogParentInterface* window)
    : QDialog(parent), _window(window)
{
    setupUi(this);
    nameEdit->installEventFilter(this);
    connect(presetList, &QListWidget::itemSelectionChanged, this, &TORVPresetManager::selectionChanged);
    connect(presetList, &QListWidget::itemDoubleClicked, this, &TORVPresetManager::clickedApplySelected);
    connect(applyButton, &QPushButton::clicked, this, &TORVPresetManager::clickedApplySelected);
    connect(removeButton, &QPushButton::clicked, this, &TORVPresetManager::clickedRemoveSelected);
    connect(nameEdit, &QLineEdit::textChanged, this, &TORVPresetManager::nameChanged);
    connect(saveButton, &QPushButton::clicked, this, &TORVPresetManager::clickedSave);
    connect(closeButton, &QPushButton::clicked, this, &TORVPresetManager::clickedClose);
}

TORVPresetManager::~TORVPresetManager() = default;

boost::shared_ptr<TORVGeneralSettings> TORVPresetManager::settings() const
{
    return _window->getCurrentGeneralSettings();
}

void TORVPresetManager::showPresets(const QString& selected)
{
    const QStringList names = presetNames();
    presetList->clear();
    presetList->addItems(names);
    presetList->item(DefaultRow)
        ->setForeground(TORVPalette::instance().color(QStringLiteral("muted"), TORVDisplayMode::isNight()));
    const int row = names.indexOf(selected);
    if (row >= 0) {
        presetList->setCurrentRow(row);
    }
    selectionChanged();
    nameChanged(nameEdit->text());
}

int TORVPresetManager::selectedItem() const
{
    const QList<QListWidgetItem*> selected = presetList->selectedItems();
    if (selected.isEmpty()) {
        TORVLog::Instance()->logDebug(QStringLiteral("selected none"));
        return NoRow;
    }
    return presetList->row(selected.first());
}

void TORVPresetManager::selectionChanged()
{
    const int row = selectedItem();
    applyButton->setEnabled(row != NoRow);
    removeButton->setEnabled(row > DefaultRow);
}

// Blanks at the ends, and more than one in a row, would tell names apart that look alike.
QString TORVPresetManager::nameToSave() const
{
    return nameEdit->text().simplified();
}

void TORVPresetManager::nameChanged(QString const& /*name*/)
{
    const QString name = nameToSave();
    saveButton->setEnabled(!name.isEmpty() && !isReserved(name));
    if (isReserved(name)) {
        tell(tr("This name is in use by the program"), "error");
    } else if (presetNames().contains(name)) {
        tell(tr("Replaces the preset of this name"), "caption");
    } else {
        tell(QString(), "caption");
    }
}

void TORVPresetManager::tell(const QString& text, const char* textRole)
{
    nameMessage->setText(text);
    nameMessage->setProperty("textRole", QLatin1String(textRole));
    nameMessage->style()->unpolish(nameMessage);
    nameMessage->style()->polish(nameMessage);
}

void TORVPresetManager::clickedSave()
{
    const QString name = nameToSave();
    if (name.isEmpty() || isReserved(name)) {
        return;
    }
    readPresets();
    const QStringList names = presetNames();
    const int row = names.indexOf(name);
    putPreset((row > DefaultRow ? row : names.size()) - 1, name);
    writePresets();
    nameEdit->clear();
    showPresets(name);
}

void TORVPresetManager::clickedApplySelected()
{
    const int row = selectedItem();
    if (row != NoRow) {
        Q_EMIT presetItemApplied(row);
    }
}

// Another viewer may have removed it already, or moved it to another row.
void TORVPresetManager::clickedRemoveSelected()
{
    const int selected = selectedItem();
    if (selected <= DefaultRow) {
        return;
    }
    const QString name = presetList->item(selected)->text();
    readPresets();
    const int row = presetNames().indexOf(name, DefaultRow + 1);
    if (row > DefaultRow) {
        takePreset(row - 1);
        writePresets();
    }
    const QStringList left = presetNames();
    showPresets(left.at(std::min(selected, left.size() - 1)));
}

void TORVPresetManager::clickedClose()
{
    done(Accepted);
}

// Return saves in the field of the name, and applies elsewhere.
bool TORVPresetManager::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == nameEdit && event->type() == QEvent::FocusIn) {
        saveButton->setDefault(true);
    } else if (watched == nameEdit && event->type() == QEvent::FocusOut) {
        applyButton->setDefault(true);
    }
    return QDialog::eventFilter(watched, event);
}
