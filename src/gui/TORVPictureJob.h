#pragma once

#include "visualization/TORVProductScene.h"

#include <QObject>
#include <QString>
#include <QThread>

#include <atomic>
#include <functional>
#include <memory>

/**
 * Builds the scene of one volume of reflectivity, the newest below a directory or a given one, on a thread of its own.
 *
 * Thread: made, started and destroyed on the main thread; the destructor ends the work and waits for it.
 */
class TORVPictureJob final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVPictureJob)

public:
    explicit TORVPictureJob(QObject* parent = nullptr);
    ~TORVPictureJob() override;

    /// One of the two, once.
    void start(const QString& directory);
    void start(const TORVFile::CPtr& file);

    /// Whether `candidate` is to be shown rather than `best`, which may be null: the newer one, of two of one moment
    /// the finer grid. Only a volume of reflectivity is.
    static bool isBetter(const TORVFile& candidate, const TORVFile::CPtr& best);

    /// What was built: null before `finished`, and after it when there was nothing to show.
    const TORVProductScene::CPtr& getScene() const { return _scene; }

Q_SIGNALS:
    /// On the main thread.
    void finished();

private:
    void run(std::function<TORVFile::CPtr()> choose);
    TORVFile::CPtr newestVolume(const QString& directory) const;

    std::unique_ptr<QThread> _thread;
    std::atomic<bool> _abort{false};
    TORVProductScene::CPtr _scene; // written by the thread, read after it has ended
};
