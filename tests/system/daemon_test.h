// The fixture of most system tests: a real daemon of their own on an empty state folder.
#pragma once

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <string>

#include "daemon/base/tlv.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"
#include "tests/system/daemon_process.h"

namespace kobd::test
{
class DaemonTest : public testing::Test
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_NAMESPACES();
        ASSERT_EQ(system("rm -rf /tmp/state /tmp/kob* /tmp/*.conf"), 0);
        ASSERT_TRUE(daemon_.Start());
    }

    // Ends it as a power cut would, and starts it on what it left.
    void Restart()
    {
        daemon_.End(SIGKILL);
        ASSERT_TRUE(daemon_.Start());
    }

    static std::string Get(const std::string& name)
    {
        const Answer answer = Request(kGet, {{kTagObjectName, name}});
        return answer.texts.size() == 2 ? answer.texts[1] : "nothing";
    }

    static int Set(const std::string& name, const std::string& value, uint16_t id = kSet)
    {
        const Answer answer = Request(id, {{kTagObjectName, name}, {kTagValue, value}});
        return answer.bus != 0 ? -1 : answer.result;
    }

    static bool LogSays(const std::string& text) { return FileText("/tmp/kobd.log").find(text) != std::string::npos; }

    DaemonProcess daemon_{"/tmp/state"};
};
}  // namespace kobd::test
