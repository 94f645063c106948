// ThreadSanitizer knows what happens in code that it instrumented, and Qt's libraries are not: it misses the order that
// Qt's mutexes, conditions, threads and queued calls bring about, and would report races where there are none. This
// file stands in front of those functions and tells it. Linked into the tests of the tsan preset alone.
//
// Signals and events share one token: whatever was done before a signal is taken to be seen by every event that is
// delivered later. That is a little more order than there is, so two sides that meet only through unrelated signals are
// not checked against each other.

#include <QDeadlineTimer>
#include <QMutex>
#include <QThread>
#include <QWaitCondition>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

// From Qt's private headers: the hooks that its own test library uses.
struct QSignalSpyCallbackSet
{
    using BeginCallback = void (*)(QObject* caller, int signalOrMethod, void** arguments);
    using EndCallback = void (*)(QObject* caller, int signalOrMethod);
    BeginCallback signal_begin_callback;
    BeginCallback slot_begin_callback;
    EndCallback signal_end_callback;
    EndCallback slot_end_callback;
};

Q_CORE_EXPORT void qt_register_signal_spy_callbacks(QSignalSpyCallbackSet* callbacks);

namespace
{

template <typename Function>
Function next(const char* name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

char signalsAndEvents;

void onSignal(QObject*, int, void**)
{
    __tsan_release(&signalsAndEvents);
}

bool onEvent(void**)
{
    __tsan_acquire(&signalsAndEvents);
    return false; // the event goes its usual way
}

const bool isHooked = [] {
    static QSignalSpyCallbackSet callbacks = {onSignal, nullptr, nullptr, nullptr};
    qt_register_signal_spy_callbacks(&callbacks);
    QInternal::registerCallback(QInternal::EventNotifyCallback, onEvent);
    return true;
}();

void waited(QMutex* mutex)
{
    __tsan_mutex_pre_lock(mutex, 0);
    __tsan_mutex_post_lock(mutex, 0, 0);
}

void willWait(QMutex* mutex)
{
    __tsan_mutex_pre_unlock(mutex, 0);
    __tsan_mutex_post_unlock(mutex, 0);
}

} // namespace

void QMutex::lock() noexcept
{
    static const auto original = next<void (*)(QMutex*)>("_ZN6QMutex4lockEv");
    __tsan_mutex_pre_lock(this, 0);
    original(this);
    __tsan_mutex_post_lock(this, 0, 0);
}

bool QMutex::tryLock(int timeout) noexcept
{
    static const auto original = next<bool (*)(QMutex*, int)>("_ZN6QMutex7tryLockEi");
    __tsan_mutex_pre_lock(this, __tsan_mutex_try_lock);
    const bool locked = original(this, timeout);
    __tsan_mutex_post_lock(this, __tsan_mutex_try_lock | (locked ? 0U : __tsan_mutex_try_lock_failed), 0);
    return locked;
}

void QMutex::unlock() noexcept
{
    static const auto original = next<void (*)(QMutex*)>("_ZN6QMutex6unlockEv");
    __tsan_mutex_pre_unlock(this, 0);
    original(this);
    __tsan_mutex_post_unlock(this, 0);
}

bool QWaitCondition::wait(QMutex* mutex, QDeadlineTimer deadline)
{
    static const auto original =
        next<bool (*)(QWaitCondition*, QMutex*, QDeadlineTimer)>("_ZN14QWaitCondition4waitEP6QMutex14QDeadlineTimer");
    willWait(mutex);
    const bool woken = original(this, mutex, deadline);
    waited(mutex);
    return woken;
}

bool QWaitCondition::wait(QMutex* mutex, unsigned long time)
{
    return wait(mutex, time == ULONG_MAX ? QDeadlineTimer(QDeadlineTimer::Forever)
                                         : QDeadlineTimer(static_cast<qint64>(time)));
}

// The end of a thread is a signal of its own, so the token holds all that the thread did.
bool QThread::wait(QDeadlineTimer deadline)
{
    static const auto original = next<bool (*)(QThread*, QDeadlineTimer)>("_ZN7QThread4waitE14QDeadlineTimer");
    const bool ended = original(this, deadline);
    __tsan_acquire(&signalsAndEvents);
    return ended;
}
