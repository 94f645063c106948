#include "gui/TORVDirectoryEdit.h"

#include "gui/TORVPalette.h"
#include "utils/TORVDisplayMode.h"

#include <QAction>
#include <QEvent>

TORVDirectoryEdit::TORVDirectoryEdit(QWidget* parent) : QLineEdit(parent), _markAction(new QAction(this))
{
    _markAction->setObjectName(QStringLiteral("error"));
    _markAction->setVisible(false);
    addAction(_markAction, TrailingPosition);
    connect(this, &QLineEdit::textChanged, this, &TORVDirectoryEdit::checkDirectory);
    connect(&_probe, &TORVPathProbe::answered, this, &TORVDirectoryEdit::take);
}

void TORVDirectoryEdit::checkDirectory()
{
    _probe.ask(absolutePath());
    if (absolutePath().isEmpty()) {
        mark(QString());
    }
}

void TORVDirectoryEdit::take(const TORVPathProbe::Reading& reading)
{
    const bool isRight = reading.isDirectory || reading.path.isEmpty();
    mark(isRight ? QString() : tr("Invalid directory: %1").arg(reading.path));
    Q_EMIT checked();
}

void TORVDirectoryEdit::mark(const QString& errorText)
{
    _errorText = errorText;
    _markAction->setVisible(isInvalid());
    _markAction->setToolTip(errorText);
    setAccessibleDescription(errorText);
    updateColor();
}

void TORVDirectoryEdit::updateColor()
{
    const QColor color = TORVPalette::instance().color(QStringLiteral("err_text"), TORVDisplayMode::isNight());
    const QString sheet =
        isInvalid() ? QStringLiteral("QLineEdit:enabled {color: %1; border-color: %1;}").arg(color.name()) : QString();
    if (sheet != styleSheet()) {
        setStyleSheet(sheet);
    }
}

void TORVDirectoryEdit::changeEvent(QEvent* event)
{
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        updateColor();
    }
}
