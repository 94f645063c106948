#include "gui/TORVDockTitle.h"

#include "gui/TORVPalette.h"
#include "utils/TORVDisplayMode.h"

#include <QDockWidget>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QStyleOption>
#include <QToolButton>

#include <algorithm>

namespace
{

constexpr int Height_px = 28;
constexpr int TextMargin_px = 12;
constexpr int EndMargin_px = 4;
constexpr int ButtonIcon_px = 16;

} // namespace

TORVDockTitle::TORVDockTitle(QDockWidget* dock) : QWidget(dock), _dock(dock)
{
    setObjectName(QStringLiteral("dockTitle"));
    _text = new QLabel(dock->windowTitle(), this);
    _text->setObjectName(QStringLiteral("dockTitleText"));
    _text->setProperty("textRole", QStringLiteral("section"));
    _text->setMinimumWidth(0);
    _text->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    _dockButton = addButton(QStringLiteral("dockTitleDock"), QStringLiteral("dock_float"));
    _dockButton->setAccessibleName(tr("Put back"));
    _dockButton->setToolTip(tr("Put the panel back into the window"));
    _closeButton = addButton(QStringLiteral("dockTitleClose"), QStringLiteral("window_close"));
    _closeButton->setAccessibleName(tr("Close"));
    _closeButton->setToolTip(tr("Close the panel"));
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(TextMargin_px, 0, EndMargin_px, 0);
    layout->setSpacing(2);
    layout->addWidget(_text);
    layout->addWidget(_dockButton);
    layout->addWidget(_closeButton);
    layout->setSizeConstraint(QLayout::SetNoConstraint); // the size is that of the hints, 0 while docked
    connect(_dockButton, &QToolButton::clicked, dock, [dock] { dock->setFloating(false); });
    connect(_closeButton, &QToolButton::clicked, dock, &QWidget::close);
    connect(dock, &QDockWidget::topLevelChanged, this, &TORVDockTitle::follow);
    connect(dock, &QDockWidget::featuresChanged, this, &TORVDockTitle::follow);
    connect(dock, &QWidget::windowTitleChanged, _text, &QLabel::setText);
    dock->installEventFilter(this);
    dock->setTitleBarWidget(this);
    follow();
}

TORVDockTitle::~TORVDockTitle() = default;

QToolButton* TORVDockTitle::addButton(const QString& objectName, const QString& icon)
{
    auto* const button = new QToolButton(this);
    button->setObjectName(objectName);
    button->setAccessibleDescription(icon);
    button->setAutoRaise(true);
    button->setIconSize(QSize(ButtonIcon_px, ButtonIcon_px));
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

QSize TORVDockTitle::sizeHint() const
{
    if (!_dock->isFloating()) {
        return {0, 0};
    }
    const int text = _text->sizeHint().height();
    const int buttons = layout()->sizeHint().width();
    return {buttons + _text->sizeHint().width(), std::max(Height_px, text + 2 * EndMargin_px)};
}

QSize TORVDockTitle::minimumSizeHint() const
{
    return {0, sizeHint().height()};
}

void TORVDockTitle::follow()
{
    const bool isFloating = _dock->isFloating();
    const QDockWidget::DockWidgetFeatures features = _dock->features();
    _text->setVisible(isFloating);
    _dockButton->setVisible(isFloating && (features & QDockWidget::DockWidgetFloatable) != 0);
    _closeButton->setVisible(isFloating && (features & QDockWidget::DockWidgetClosable) != 0);
    updateGeometry();
}

// Qt leaves room for a frame, and leaves it empty where the title is not its own.
bool TORVDockTitle::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == _dock && event->type() == QEvent::Paint && _dock->isFloating()) {
        QPainter painter(_dock);
        painter.setPen(TORVPalette::instance().color(QStringLiteral("control"), TORVDisplayMode::isNight()));
        painter.drawRect(_dock->rect().adjusted(0, 0, -1, -1));
    }
    return QWidget::eventFilter(watched, event);
}

void TORVDockTitle::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    QStyleOption option;
    option.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}
