// kobctl in front of a daemon that lies about its files or does not answer: it reads and removes
// nothing but dump files, and leaves no change file behind.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstring>
#include <fstream>

#include "daemon/base/tlv.h"
#include "platform/message.h"
#include "tests/joined.h"
#include "tests/namespaces.h"
#include "tests/system/kobctl_program.h"

namespace kobd::test
{
namespace
{
constexpr uint32_t kDumpCode = 12u << 16 | kClassRequest;
constexpr uint32_t kShowCode = 13u << 16 | kClassRequest;
constexpr uint32_t kSetCode = 10u << 16 | kClassRequest;

std::string told_path;               // what the lying daemon calls its dump file
std::string change_path;             // of the change file it was sent
std::atomic<mode_t> change_mode{0};  // of that file, once it was seen

int TellPath(MessageHeader* request)
{
    alignas(MessageHeader) char bytes[kMessageMax] = {};
    auto* reply = reinterpret_cast<MessageHeader*>(bytes);
    *reply = *request;
    TlvWriter writer({bytes + sizeof(MessageHeader), kPayloadMax});
    if (!writer.Int(kTagResult, 0) || !writer.Text(kTagValue, told_path)) return -1;
    reply->length = static_cast<uint16_t>(writer.Size());
    return MessageSendReply(reply);
}

// Looks at the change file and never answers.
int KeepSilent(MessageHeader* request)
{
    TlvReader reader({reinterpret_cast<const char*>(request + 1), request->length});
    const auto item = reader.Next();
    change_path = item ? std::string(item->Text().value_or("")) : "";
    struct stat status = {};
    stat(change_path.c_str(), &status);
    change_mode = status.st_mode;
    return 0;
}

const MsgHandler kHandlers[] = {
    {"ReqTableSet", kSetCode, KeepSilent},
    {"ReqTableDump", kDumpCode, TellPath},
    {"ReqShow", kShowCode, TellPath},
    {nullptr, 0, nullptr},
};

class LyingDaemon : public testing::Test
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_NAMESPACES();
        ASSERT_EQ(system("rm -rf /tmp/victim* /tmp/kobd-* /tmp/kobctl-*"), 0);
        std::ofstream("/tmp/victim") << "precious";
        change_mode = 0;
        MessageProccessRegister(kHandlers);
        ASSERT_EQ(Join(kModuleKobd), 0);
        running_ = true;
    }

    void TearDown() override
    {
        if (running_) MessageDestroy();
    }

    static bool Exists(const std::string& path)
    {
        struct stat status;
        return lstat(path.c_str(), &status) == 0;
    }

    bool running_ = false;
};

TEST_F(LyingDaemon, NothingButADumpFileIsReadOrRemoved)
{
    ASSERT_EQ(symlink("/tmp/victim", "/tmp/kobd-1"), 0);
    ASSERT_EQ(mkfifo("/tmp/kobd-2", 0600), 0);
    ASSERT_EQ(mkdir("/tmp/kobd-3", 0700), 0);
    std::ofstream("/tmp/kobd-12345678") << "precious";
    std::ofstream("/tmp/kobd-4x") << "precious";
    const struct
    {
        const char* path;
        const char* error;  // after the command and a colon
        bool stays;
    } cases[] = {
        {"/tmp/victim", "the reply names '/tmp/victim', which is no dump file; it was left alone", true},
        {"/tmp/kobd-1/../victim", "the reply names '/tmp/kobd-1/../victim', which is no dump file; it was left alone",
         false},
        {"/tmp/kobd-12345678", "the reply names '/tmp/kobd-12345678', which is no dump file; it was left alone", true},
        {"/tmp/kobd-4x", "the reply names '/tmp/kobd-4x', which is no dump file; it was left alone", true},
        {"/tmp/kobd-", "the reply names '/tmp/kobd-', which is no dump file; it was left alone", false},
        {"", "the reply names '', which is no dump file; it was left alone", false},
        {"/tmp/kobd-2", "/tmp/kobd-2 is not a plain file; it was left alone", true},
        {"/tmp/kobd-3", "/tmp/kobd-3 is not a plain file; it was left alone", true},
        {"/tmp/kobd-9", "cannot open the dump file /tmp/kobd-9: No such file or directory", false},
    };
    for (const auto& one : cases)
    {
        told_path = one.path;
        const Ran dump = RunKobctl({"table", "dump", "FwIpFilterTable"});
        EXPECT_EQ(dump.status, 1) << one.path;
        EXPECT_EQ(dump.errors, std::string("kobctl: table dump: ") + one.error + "\n");
        const Ran show = RunKobctl({"show"});
        EXPECT_EQ(show.status, 1) << one.path;
        EXPECT_EQ(show.errors, std::string("kobctl: show: ") + one.error + "\n");
        EXPECT_TRUE(Exists(one.path) || !one.stays) << one.path;
    }
    told_path = "/tmp/kobd-1";  // the words of the system for a link differ from one to the other
    EXPECT_EQ(RunKobctl({"table", "dump", "FwIpFilterTable"}).status, 1);
    EXPECT_TRUE(Exists("/tmp/kobd-1") && Exists("/tmp/victim"));
}

TEST_F(LyingDaemon, ABrokenDumpFileIsReportedAndRemoved)
{
    const std::string table("\3\0\2\0T\0", 6);
    const std::string index("\4\0\4\0\1\0\0\0", 8);
    const std::string column("\5\0\2\0C\0", 6);
    const std::string value("\2\0\2\0V\0", 6);
    const struct
    {
        std::string bytes;
        const char* why;
    } cases[] = {
        {"garbage", "an item longer than the file"},
        {table + index, "a row without columns"},
        {table + index + column, "a column without its value"},
        {index + column + value, "a row of no table"},
        {table + column + value, "a row without index"},
        {column + value, "a value of no row"},
        {table + index + column + value + std::string("\5\0", 2), "half an item"},
        {table + index + column + std::string("\2\0\1\0V", 5), "a text without its zero byte"},
    };
    for (const auto& one : cases)
    {
        told_path = "/tmp/kobd-77";
        std::ofstream(told_path) << one.bytes;
        const Ran dump = RunKobctl({"table", "dump", "--json", "FwIpFilterTable"});
        EXPECT_EQ(dump.status, 1) << one.why;
        EXPECT_EQ(dump.errors, "kobctl: table dump: the dump file holds no rows that can be read\n") << one.why;
        EXPECT_FALSE(Exists(told_path)) << one.why;
    }
}

TEST_F(LyingDaemon, ChangeFilesAreTheirOwnersAloneAndGoneAfterATimeout)
{
    const Ran set = RunKobctl({"table", "set", "--timeout", "0.3", "FwIpFilterTable", "1", "IP_LIST=a"});
    EXPECT_EQ(set.status, 1);
    EXPECT_NE(set.errors.find("no answer within 300 ms"), std::string::npos) << set.errors;
    EXPECT_EQ(change_mode, static_cast<mode_t>(S_IFREG | 0600));
    EXPECT_TRUE(change_path.starts_with("/tmp/kobctl-")) << change_path;
    EXPECT_FALSE(Exists(change_path));
}

TEST_F(LyingDaemon, ASignalLeavesNoChangeFile)
{
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
    {
        change_mode = 0;
        const pid_t kobctl = StartKobctl({"table", "set", "--timeout", "20", "FwIpFilterTable", "1", "IP_LIST=a"});
        for (int i = 0; i < 1000 && change_mode == 0; ++i) usleep(10000);
        EXPECT_EQ(change_mode, static_cast<mode_t>(S_IFREG | 0600));
        kill(kobctl, number);
        EXPECT_EQ(ReadKobctl(kobctl).status, -number);
        EXPECT_FALSE(Exists(change_path)) << number;
    }
}
}  // namespace
}  // namespace kobd::test
