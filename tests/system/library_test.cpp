// A platform library swapped at load time: it finds the daemon's exported names, and what it
// supplies is what the daemon calls.
#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "daemon/base/tlv.h"
#include "tests/namespaces.h"
#include "tests/process_setup.h"
#include "tests/state_sql.h"
#include "tests/system/daemon_process.h"

namespace kobd::test
{
namespace
{
TEST(PlatformLibrary, FindsWhatTheDaemonExportsAndTakesThePlaceOfTheHosts)
{
    SKIP_WITHOUT_NAMESPACES();
    ASSERT_EQ(system("rm -rf /tmp/state /tmp/kobd*"), 0);
    setenv("LD_PRELOAD", (kPrograms + "tests/libkobd_visitor.so").c_str(), 1);
    setenv("ASAN_OPTIONS", "verify_asan_link_order=0", 1);
    DaemonProcess daemon("/tmp/state");
    const bool started = daemon.Start();
    unsetenv("LD_PRELOAD");
    unsetenv("ASAN_OPTIONS");
    ASSERT_TRUE(started);
    ASSERT_EQ(Request(kSet, {{kTagObjectName, "webHttpPort"}, {kTagValue, "8081"}}).result, 0);
    EXPECT_EQ(FileText("/tmp/visit"), "wifi_flag_mutex " + std::to_string(sizeof(pthread_mutex_t)) +
                                          "\napn_modify 140\naa 372\napn_list 2800\nmessage_buffer 5196\n"
                                          "SnapshotGet 0 8081\nvalidIpv4 0 2\nkobd_send_message 0\n");
    EXPECT_NE(FileText("/tmp/kobd.log").find("visitor[7]: called from a library"), std::string::npos);
    EXPECT_EQ(StateSql("/tmp/state", "SELECT * FROM objects"), "webHttpPort|8081\n") << "the host's was called next";
}
}  // namespace
}  // namespace kobd::test
