#pragma once

#include <QObject>
#include <QString>

/**
 * Asks the system now and then whether a service runs, on a thread of its own: the answer may take half a minute.
 *
 * Thread: main thread only; the worker sees nothing of this object but its address. Destroying it waits for nobody.
 */
class TORVServiceCheck final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVServiceCheck)

public:
    explicit TORVServiceCheck(QString service, QObject* parent = nullptr);
    ~TORVServiceCheck() override;

    /// Asks, unless an answer is still awaited.
    void start();

    bool isAsking() const { return _isAsking; }

Q_SIGNALS:
    void checked(bool isRunning);

private:
    void take(bool isRunning);

    const QString _service;
    bool _isAsking = false;
};
