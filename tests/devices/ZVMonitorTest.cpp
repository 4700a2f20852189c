#include "devices/monitor/ZVMonitor.h"
#include "support/XServer.h"

#include <gtest/gtest.h>

namespace
{
TEST(ZVMonitor, KnowsNamesAndRefreshRates)
{
    const XServer server = XServer::StartWithTwoMonitors();
    if (!server.IsUsable())
        GTEST_SKIP() << "Xorg with its dummy driver and xrandr cannot be started here";
    setenv("DISPLAY", server.GetDisplay().c_str(), 1);
    ZVMonitor monitor(1);
    EXPECT_EQ(monitor.Current, 1);
    ASSERT_EQ(monitor.Monitors.GetCount(), 2);
    // 148.5 million pixels a second, and 2200 x 1125 of them in a picture.
    EXPECT_DOUBLE_EQ(monitor.Monitors[1].RefreshRate, 60);
    ZVString name;
    ZVString id;
    monitor.GetNames(name, id);
    EXPECT_STREQ(name, L"DUMMY2");
    EXPECT_STREQ(id, L"DUMMY2");

    EXPECT_FALSE(monitor.SetMonitor(2));
    EXPECT_FALSE(monitor.SetMonitor(-1));
    EXPECT_EQ(monitor.GetRect(), (ZVRect {1920, 0, 3840, 1080}));
    monitor.Monitors[1].Name.Empty();
    monitor.Monitors[1].Id.Empty();
    monitor.GetNames(name, id);
    EXPECT_STREQ(name, L"Monitor #1");
    EXPECT_STREQ(id, L"UUID-Monitor-1");

    EXPECT_TRUE(monitor.UpdateInfo());
    EXPECT_EQ(monitor.Current, 0);
    EXPECT_EQ(monitor.Indexes.GetCount(), 2);
    EXPECT_EQ(monitor.GetRect(), (ZVRect {0, 0, 1920, 1080}));
}
}
