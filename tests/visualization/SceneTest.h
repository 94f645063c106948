#pragma once

#include "datalib/TORV3DTop.h"
#include "datalib/TORVDataStore.h"
#include "settings/TORVDisplayState.h"
#include "settings/TORVGeneralSettings.h"
#include "settings/TORVProductSettings.h"
#include "support/LogFile.h"
#include "support/ProductFiles.h"
#include "support/SandboxedHome.h"
#include "visualization/TORVVisualization.h"
#include "visualization/TORVVisualizationObserver.h"

#include <QtTest>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

/// A home of its own, a directory of volumes of the site HALMERA, a store on it and an observer. Thread: test's thread.
class SceneTest : public testing::Test
{
protected:
    static constexpr int Patience_ms = 60000;

    class Observer final : public TORVVisualizationObserver
    {
    public:
        void visualizationFinished(TORVVisualization* visualization) override
        {
            ++finished;
            last = visualization;
        }
        boost::shared_ptr<const TORVGeneralSettings> getVisualizationGeneralSettings() override { return general; }
        boost::shared_ptr<const TORVDisplayState> getVisualizationDisplayState() override { return state; }

        boost::shared_ptr<TORVGeneralSettings> general = boost::make_shared<TORVGeneralSettings>();
        boost::shared_ptr<TORVDisplayState> state = boost::make_shared<TORVDisplayState>();
        int finished = 0;
        TORVVisualization* last = nullptr;
    };

    /// Drawn whole, as opaque surfaces of those values.
    explicit SceneTest(const QMap<double, int>& surfaces)
    {
        TORVProductSettings settings(QStringLiteral("CAPPI"), QStringLiteral("Z"), TORVDataType(2));
        settings.setSurfaces(surfaces);
        settings.save();
        observer.general->setDataShrinkH(1);
        observer.general->setDataSmooth(0.0);
    }

    /// Its name is made of the key of time.
    void add(const char* key, const TORVProductFields& fields, const ProductFiles::Field& field)
    {
        files.write(QStringLiteral("HAL%1.CAPZ").arg(QLatin1String(key)), fields, ProductFiles::data(fields, field));
    }

    /// The frame of the reflectivity at that time; all files must be there when the first frame is made.
    TORVDataFrame::Ptr frame(const char* key)
    {
        if (!store) {
            store = boost::make_shared<TORVDataStore>(nullptr);
            store->setDirectories(files.path(QString()), QString(), QString(), home.filePath(QStringLiteral("cache")));
            EXPECT_TRUE(QTest::qWaitFor([&] { return store->getDirTop3d() != nullptr; }, Patience_ms));
        }
        return boost::make_shared<TORVDataFrame>(store, QStringLiteral("HALMERA"), QLatin1String(key),
                                                 QStringLiteral("CAPPI"), QStringLiteral("Z"), QString(), 180, 1.5);
    }

    /// Turns every layer off but the 3-D product.
    void showProductAlone()
    {
        for (const TORVDisplayGroup::Ptr& group : observer.state->getMembers()) {
            for (const TORVDisplayLayer::Ptr& layer : group->getMembers()) {
                layer->setEnabled(layer->getKey() == TORVDisplayLayer::LAYER_3DPRODUCT);
            }
        }
    }

    bool waitForFinished(int count)
    {
        return QTest::qWaitFor([&] { return observer.finished >= count; }, Patience_ms);
    }

    /// What has been logged after the first `mark` lines.
    QStringList linesSince(int mark) const { return log.lines().mid(mark); }

    LogFile log{TORVLog::LEVEL_DEBUG}; // threads write to it: the first to come and the last to go
    SandboxedHome home;
    ProductFiles files;
    Observer observer;
    TORVDataStore::Ptr store;
};
