#pragma once

#include "gui/TORVAnimation.h"

#include "datalib/StoreTest.h"
#include "settings/TORVDisplayState.h"
#include "settings/TORVGeneralSettings.h"
#include "visualization/TORVVisualization.h"
#include "visualization/TORVVisualizationObserver.h"

/**
 * A sequence over a store on directories of its own. Files are told by their time, in seconds after 2026-07-14 12:00:00
 * UTC, which is also their key unless another one is given.
 *
 * Thread: test's thread.
 */
class AnimationTest : public StoreTest
{
protected:
    static constexpr int Minute = 60;
    static constexpr int Hour = 60 * Minute;

    /// Answers settings, shows nothing.
    class Observer final : public TORVVisualizationObserver
    {
    public:
        void visualizationFinished(TORVVisualization*) override {}
        boost::shared_ptr<const TORVGeneralSettings> getVisualizationGeneralSettings() override { return general; }
        boost::shared_ptr<const TORVDisplayState> getVisualizationDisplayState() override { return state; }

        boost::shared_ptr<TORVGeneralSettings> general = boost::make_shared<TORVGeneralSettings>();
        boost::shared_ptr<TORVDisplayState> state = boost::make_shared<TORVDisplayState>();
    };

    /// What is asked for; a test changes what it is about.
    struct Request
    {
        QString site = QStringLiteral("HALMERA");
        QString product = QStringLiteral("CAPPI");
        QString configuration = QStringLiteral("Z");
        QString product2d;
        QDateTime time = at(0);
        int length = Hour;
        int interval = 0;
        bool resetToLast = false;
        bool live = false;
    };

    static QString keyAt(int seconds) { return at(seconds).toString(QStringLiteral("yyMMddhhmmss")); }

    QString addVolume(int seconds, Quantity quantity = Z, const QByteArray& site = "HALMERA") const
    {
        return add3d(keyAt(seconds), volume(site, quantity, seconds));
    }

    void addVolumes(const QVector<int>& times) const
    {
        for (const int seconds : times) {
            addVolume(seconds);
        }
    }

    /// @return what the animation answers
    bool update(const Request& request)
    {
        return animation.updateFrames(store, request.site, request.product, request.configuration, request.product2d,
                                      request.time, request.length, request.interval, request.resetToLast,
                                      request.live);
    }

    bool update() { return update(Request()); }

    /// Of all frames, in seconds after noon.
    QVector<qint64> times() const
    {
        QVector<qint64> result;
        for (const TORVAnimation::FramePtr& frame : animation.getFrames()) {
            result << at(0).secsTo(frame->getTime());
        }
        return result;
    }

    /// The last line of the log with that number.
    QString lastLogged(const char* words) const { return logged(words).isEmpty() ? QString() : logged(words).last(); }

    Observer observer;
    TORVAnimation animation{&observer};
};
