// kobctl in front of a daemon that lies about its files or does not answer: it reads and removes
// nothing but dump files, and leaves no change file behind.
#include <sys/stat.h>

#include <atomic>
#include <filesystem>
#include <fstream>

#include "daemon/base/result.h"
#include "daemon/base/tlv.h"
#include "host/bus/bus.h"
#include "tests/items.h"
#include "tests/joined.h"
#include "tests/system/daemon_test.h"
#include "tests/system/kobctl_program.h"

namespace kobd::test
{
namespace
{
namespace fs = std::filesystem;

std::string told_path;               // what the lying daemon calls its dump file
std::string change_path;             // of the change file it was sent
std::atomic<mode_t> change_mode{0};  // of that file, once it was seen

// The message that came has room for the reply.
int Reply(MessageHeader* request, const std::string& items)
{
    request->length = static_cast<uint16_t>(items.copy(reinterpret_cast<char*>(request + 1), kPayloadMax));
    return MessageSendReply(request);
}

int TellPath(MessageHeader* request) { return Reply(request, IntItem(kTagResult, 0) + TextItem(kTagValue, told_path)); }

// Says nothing about its state folder.
void RefuseControl(MessageHeader* request) { Reply(request, IntItem(kTagResult, kNotFound)); }

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
    {"ReqTableSet", MessageCode(kReqTableSet, kClassRequest), KeepSilent},
    {"ReqTableDump", MessageCode(kReqTableDump, kClassRequest), TellPath},
    {"ReqShow", MessageCode(kReqShow, kClassRequest), TellPath},
    {nullptr, 0, nullptr},
};

bool Exists(const std::string& path) { return fs::is_symlink(path) || fs::exists(path); }

class LyingDaemon : public SystemTest
{
protected:
    void SetUp() override
    {
        SystemTest::SetUp();
        if (IsSkipped()) return;
        change_mode = 0;
        host::BusCall({.control = RefuseControl});
        MessageProccessRegister(kHandlers);
        ASSERT_EQ(Join(kModuleKobd), 0);
        running_ = true;
    }

    void TearDown() override
    {
        if (running_) MessageDestroy();
        host::BusCall({});
    }

    bool running_ = false;
};

TEST_F(LyingDaemon, NothingButADumpFileIsReadOrRemoved)
{
    for (const char* file : {"/tmp/victim", "/tmp/kobd-12345678", "/tmp/kobd-4x"}) std::ofstream(file) << "precious";
    ASSERT_EQ(symlink("/tmp/victim", "/tmp/kobd-1"), 0);
    ASSERT_EQ(mkfifo("/tmp/kobd-2", 0600), 0);
    ASSERT_EQ(mkdir("/tmp/kobd-3", 0700), 0);
    const std::string kNone = ", which is no dump file; it was left alone";
    const struct
    {
        const char* path;
        std::string error;
    } cases[] = {
        {"/tmp/victim", "the reply names '/tmp/victim'" + kNone},
        {"/tmp/kobd-3/../victim", "the reply names '/tmp/kobd-3/../victim'" + kNone},
        {"/tmp/kobd-12345678", "the reply names '/tmp/kobd-12345678'" + kNone},
        {"/tmp/kobd-4x", "the reply names '/tmp/kobd-4x'" + kNone},
        {"/tmp/kobd-", "the reply names '/tmp/kobd-'" + kNone},
        {"", "the reply names ''" + kNone},
        {"/tmp/kobd-1", ""},  // the words of the system for a link differ from one to the other
        {"/tmp/kobd-2", "/tmp/kobd-2 is not a plain file; it was left alone"},
        {"/tmp/kobd-3", "/tmp/kobd-3 is not a plain file; it was left alone"},
        {"/tmp/kobd-9", "cannot open the dump file /tmp/kobd-9: No such file or directory"},
    };
    for (const auto& one : cases)
        for (const std::string command : {"table dump", "show"})
        {
            told_path = one.path;
            const bool there = Exists(told_path);
            const Ran ran = RunLine(command == "show" ? command : command + " FwIpFilterTable");
            EXPECT_EQ(ran.status, 1) << one.path;
            EXPECT_TRUE(ran.errors.starts_with("kobctl: " + command + ": " + one.error)) << ran.errors;
            EXPECT_EQ(Exists(told_path), there) << one.path;
        }
    EXPECT_EQ(FileText("/tmp/victim"), "precious");
}

TEST_F(LyingDaemon, ABrokenDumpFileIsReportedAndRemoved)
{
    const std::string table = TextItem(kTagTableName, "T");
    const std::string index = IntItem(kTagRowIndex, 1);
    const std::string column = TextItem(kTagColumnName, "C");
    const std::string value = TextItem(kTagValue, "V");
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
        {table + index + column + value + value.substr(0, 2), "half an item"},
        {table + index + column + RawItem(kTagValue, "V"), "a text without its zero byte"},
    };
    for (const auto& one : cases)
    {
        told_path = "/tmp/kobd-77";
        std::ofstream(told_path) << one.bytes;
        EXPECT_EQ(RunLine("table dump --json FwIpFilterTable").errors,
                  "kobctl: table dump: the dump file holds no rows that can be read\n")
            << one.why;
        EXPECT_FALSE(Exists(told_path)) << one.why;
    }
}

TEST_F(LyingDaemon, ChangeFilesAreTheirOwnersAloneAndGoneAfterATimeoutOrASignal)
{
    for (const int number : {0, SIGTERM, SIGINT, SIGHUP})
    {
        change_mode = 0;
        const std::string timeout = number == 0 ? "0.3" : "20";
        const pid_t kobctl = StartKobctl("table set --timeout " + timeout + " FwIpFilterTable 1 IP_LIST=a");
        EXPECT_TRUE(Await([] { return change_mode != 0; }));
        EXPECT_EQ(change_mode, static_cast<mode_t>(S_IFREG | 0600));
        if (number != 0) kill(kobctl, number);
        const Ran ran = ReadKobctl(kobctl);
        EXPECT_EQ(ran.status, number == 0 ? 1 : -number);
        EXPECT_EQ(ran.errors.find("no answer within 300 ms") != std::string::npos, number == 0) << ran.errors;
        EXPECT_TRUE(change_path.starts_with("/tmp/kobd-change-")) << change_path;
        EXPECT_FALSE(Exists(change_path)) << number;
    }
}
}  // namespace
}  // namespace kobd::test
