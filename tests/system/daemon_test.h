// The fixtures of the system tests: an empty /tmp, and mostly a real daemon on an empty state folder.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>

#include "daemon/base/clock.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"
#include "tests/system/daemon_process.h"

namespace kobd::test
{
inline const std::string kState = "/tmp/state";
inline const std::string kLog = "/tmp/kobd.log";

// Whether the condition comes true within that many seconds.
template <typename Condition>
bool Await(Condition condition, int seconds = 10)
{
    const int64_t deadline = NowMs() + seconds * 1000;
    while (!condition())
    {
        if (NowMs() > deadline) return false;
        usleep(5000);
    }
    return true;
}

// Whether the daemon's log has the text, or will have it before long.
inline bool LogSays(const std::string& text, int seconds = 5)
{
    return Await([&] { return FileText(kLog).find(text) != std::string::npos; }, seconds);
}

// Without a daemon until the test starts one.
class SystemTest : public testing::Test
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_NAMESPACES();
        Clear();
    }

    // Ends the daemon and empties /tmp.
    void Clear()
    {
        if (daemon_.Process() > 0) daemon_.End(SIGKILL);
        ASSERT_EQ(system("rm -rf /tmp/*"), 0);
    }

    // Ends the daemon as a power cut would, and starts it on what it left.
    void Restart()
    {
        daemon_.End(SIGKILL);
        ASSERT_TRUE(daemon_.Start());
    }

    DaemonProcess daemon_{kState};
};

class DaemonTest : public SystemTest
{
protected:
    void SetUp() override
    {
        SystemTest::SetUp();
        if (IsSkipped()) return;
        ASSERT_TRUE(daemon_.Start());
    }
};
}  // namespace kobd::test
