#pragma once

#include "datalib/TORVDataFrame.h"

#include "StoreTest.h"
#include "settings/TORVGeneralSettings.h"

#include <cmath>

/**
 * Frames of a store on directories of its own.
 *
 * Thread: test's thread.
 */
class FrameTest : public StoreTest
{
protected:
    static constexpr int Window = 180; ///< seconds

    // Keys of time, five minutes apart.
    static constexpr const char* Before = "260714115500";
    static constexpr const char* Noon = "260714120000";
    static constexpr const char* After = "260714120500";

    TORVDataFrame::Ptr frame(const char* moment = Noon, const char* product2d = "", int timeWindow = Window) const
    {
        return boost::make_shared<TORVDataFrame>(store, "HALMERA", moment, "CAPPI", "Z", product2d, timeWindow, 1.5);
    }

    TORVDataFrame::Ptr emptyFrame() const { return boost::make_shared<TORVDataFrame>(store); }

    static void expectCorner(const TORVCoordinate& corner, double lat, double lon)
    {
        EXPECT_EQ(corner.getLat(), lat);
        EXPECT_EQ(corner.getLon(), lon);
    }

    static boost::shared_ptr<TORVGeneralSettings> settings() { return boost::make_shared<TORVGeneralSettings>(); }
};
