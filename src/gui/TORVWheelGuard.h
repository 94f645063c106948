#pragma once

#include <QObject>

/**
 * Keeps the wheel from changing values in passing: a combo box, a spin box or a slider that hasn't got the focus passes
 * the wheel on to what lies around it, and a turn of the wheel gives nobody the focus.
 *
 * Thread: main thread only.
 * Ownership: the guard is the root's.
 */
class TORVWheelGuard final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVWheelGuard)

public:
    /// Guards the root and what is below it at this moment. May be called again when more has been added.
    static void guard(QWidget* root);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using QObject::QObject;
};
