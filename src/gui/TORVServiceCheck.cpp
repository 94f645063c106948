#include "gui/TORVServiceCheck.h"

#include "utils/TORVApplication.h"

#include <QCoreApplication>
#include <QPointer>
#include <QRunnable>
#include <QThreadPool>

#include <utility>

namespace
{

// A service that takes longer to tell how it is counts as stopped.
constexpr int TimeLimit_ms = 5000;

} // namespace

TORVServiceCheck::TORVServiceCheck(QString service, QObject* parent) : QObject(parent), _service(std::move(service)) {}

TORVServiceCheck::~TORVServiceCheck() = default;

// The pointer is looked at on the main thread alone, where this object dies.
void TORVServiceCheck::start()
{
    if (_isAsking) {
        return;
    }
    _isAsking = true;
    const QPointer<TORVServiceCheck> self(this);
    QThreadPool::globalInstance()->start(QRunnable::create([self, service = _service] {
        const bool isRunning = TORVApplication::isServiceRunning(service, TimeLimit_ms);
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, isRunning] {
                if (self) {
                    self->take(isRunning);
                }
            },
            Qt::QueuedConnection);
    }));
}

void TORVServiceCheck::take(bool isRunning)
{
    _isAsking = false;
    Q_EMIT checked(isRunning);
}
