#include "gui/TORVWheelGuard.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QEvent>
#include <QSlider>

namespace
{

bool isGuarded(const QObject* object)
{
    return qobject_cast<const QComboBox*>(object) || qobject_cast<const QAbstractSpinBox*>(object) ||
           qobject_cast<const QSlider*>(object);
}

TORVWheelGuard* guardOf(const QWidget& root)
{
    return root.findChild<TORVWheelGuard*>(QString(), Qt::FindDirectChildrenOnly);
}

} // namespace

void TORVWheelGuard::guard(QWidget* root)
{
    TORVWheelGuard* filter = guardOf(*root);
    if (!filter) {
        filter = new TORVWheelGuard(root);
    }
    QList<QWidget*> widgets = root->findChildren<QWidget*>();
    widgets.prepend(root);
    for (QWidget* const widget : std::as_const(widgets)) {
        if (!isGuarded(widget)) {
            continue;
        }
        if (widget->focusPolicy() == Qt::WheelFocus) {
            widget->setFocusPolicy(Qt::StrongFocus);
        }
        widget->installEventFilter(filter);
    }
}

bool TORVWheelGuard::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Wheel || qobject_cast<QWidget*>(watched)->hasFocus()) {
        return false;
    }
    event->ignore(); // it goes to the parent then
    return true;
}
