// Rows of the real daemon: what a client added is there after the daemon was killed.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fstream>

#include "daemon/tlv.h"
#include "tests/namespaces.h"
#include "tests/system/daemon_process.h"

namespace kobd::test
{
namespace
{
constexpr uint16_t kTableAdd = 7;
constexpr uint16_t kTableSet = 10;
constexpr const char* kTable = "FwIpFilterTable";

std::string Object(const std::string& name)
{
    const Answer answer = Request(kGet, {{kTagObjectName, name}});
    return answer.texts.size() == 2 ? answer.texts[1] : "nothing";
}

int AddRow() { return Request(kTableAdd, {{kTagTableName, kTable}}).result; }

int SetAddress(int32_t index, const char* address)
{
    char items[256];
    TlvWriter writer(items);
    EXPECT_TRUE(writer.Text(kTagTableName, kTable) && writer.Int(kTagRowIndex, index) &&
                writer.Text(kTagColumnName, "DestIPAddress") && writer.Text(kTagValue, address));
    const std::string path = "/tmp/change";
    std::ofstream(path, std::ios::binary).write(items, static_cast<std::streamsize>(writer.Size()));
    return Request(kTableSet, {{kTagValue, path}}).result;
}
}  // namespace

TEST(TableRows, SurviveAKillAndKeepTheirIndexes)
{
    SKIP_WITHOUT_NAMESPACES();
    ASSERT_EQ(system("rm -rf /tmp/rows /tmp/kobd*.log"), 0);
    {
        DaemonProcess daemon("/tmp/rows");
        ASSERT_TRUE(daemon.Start());
        EXPECT_EQ(Object("IpFilterIndexList"), "");
        ASSERT_EQ(AddRow(), 0);
        ASSERT_EQ(AddRow(), 0);
        ASSERT_EQ(SetAddress(2, "192.0.2.7"), 0);
        EXPECT_EQ(SetAddress(9, "192.0.2.9"), 13) << "no such row";
        daemon.End(SIGKILL);
    }
    DaemonProcess daemon("/tmp/rows");
    ASSERT_TRUE(daemon.Start());
    EXPECT_EQ(Object("IpFilterIndexList"), "1,2");
    EXPECT_EQ(Object("IpFilterNumberOfEntries"), "2");
    ASSERT_EQ(AddRow(), 0);
    EXPECT_EQ(Object("IpFilterIndexList"), "1,2,3");
    std::ifstream file("/tmp/rows/tables");
    const std::string text(std::istreambuf_iterator<char>(file), {});
    EXPECT_NE(text.find("[FwIpFilterTable 2]\nDestIPAddress=192.0.2.7\n"), std::string::npos) << text;
}
}  // namespace kobd::test
