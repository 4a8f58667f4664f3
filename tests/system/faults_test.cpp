// What happens to the real daemon when the system fails it: no queues, a full disk, a client whose
// queue takes nothing. Nothing is half changed, the log says it, and service resumes.
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/msg.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "daemon/tlv.h"
#include "platform/host/bus_queues.h"
#include "tests/namespaces.h"
#include "tests/system/daemon_process.h"

namespace kobd::test
{
namespace
{
constexpr char kState[] = "/tmp/state";
constexpr char kQueueLimit[] = "/proc/sys/kernel/msgmni";  // of this IPC namespace

int Set(const std::string& name, const std::string& value)
{
    const Answer answer = Request(kSet, {{kTagObjectName, name}, {kTagValue, value}});
    return answer.bus != 0 ? -1 : answer.result;
}

std::string Get(const std::string& name)
{
    const Answer answer = Request(kGet, {{kTagObjectName, name}});
    return answer.texts.size() == 2 ? answer.texts[1] : "nothing";
}

std::string FileOf(const std::string& path)
{
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

bool LogSays(const std::string& text)
{
    for (int look = 0; look < 50; ++look, usleep(100000))
        if (FileOf("/tmp/kobd.log").find(text) != std::string::npos) return true;
    return false;
}

class Faults : public testing::Test
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_NAMESPACES();
        ASSERT_EQ(system("rm -rf /tmp/state /tmp/kobd*; mkdir /tmp/state"), 0);
    }

    DaemonProcess daemon_{kState};
};

TEST_F(Faults, ARemovedQueueIsTakenAgainOnceTheSystemHasOne)
{
    ASSERT_TRUE(daemon_.Start());
    const std::string limit = FileOf(kQueueLimit);
    std::ofstream(kQueueLimit) << "0";
    if (FileOf(kQueueLimit) == limit) GTEST_SKIP() << "the number of queues cannot be limited here";
    ASSERT_EQ(msgctl(host::ModuleQueue(kModuleKobd, false), IPC_RMID, nullptr), 0);
    EXPECT_TRUE(LogSays("cannot have a queue again yet")) << FileOf("/tmp/kobd.log");
    std::ofstream(kQueueLimit) << limit;
    EXPECT_TRUE(LogSays("serving on a new queue"));
    EXPECT_EQ(Set("webHttpPort", "8080"), 0);
    EXPECT_EQ(Get("webHttpPort"), "8080");
}

TEST_F(Faults, AFullDiskLosesNothingThatWasDurableAndIsCaughtUpWith)
{
    ASSERT_EQ(mount("none", kState, "tmpfs", 0, "size=256k"), 0);
    ASSERT_TRUE(daemon_.Start());
    ASSERT_EQ(Set("webHttpPort", "8081"), 0);
    EXPECT_NE(system("cat /dev/zero > /tmp/state/filler 2>/dev/null"), 0);
    EXPECT_EQ(Set("webHttpsPort", "8443"), 0) << "the commit's result is not the set's";
    EXPECT_TRUE(LogSays("cannot write the state in /tmp/state: No space left on device"));
    EXPECT_EQ(Get("webHttpsPort"), "8443") << "it serves from memory";
    daemon_.End(SIGKILL);
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(Get("webHttpPort"), "8081") << "what was durable stays, whole";
    EXPECT_NE(Get("webHttpsPort"), "8443");

    ASSERT_EQ(Set("webHttpsPort", "8444"), 0);
    ASSERT_EQ(unlink("/tmp/state/filler"), 0);
    EXPECT_EQ(Request(kUpdate, {}).result, 0);
    daemon_.End(SIGKILL);
    ASSERT_TRUE(daemon_.Start());
    EXPECT_EQ(Get("webHttpsPort"), "8444") << "the next commit writes what the failed one could not";
    EXPECT_EQ(system("ls /tmp/state/*.new >/dev/null 2>&1 && exit 1 || exit 0"), 0) << "no temporary file";
    daemon_.End(SIGTERM);
    umount(kState);
}

TEST_F(Faults, AReplyThatItsClientCannotTakeIsDroppedAndTold)
{
    ASSERT_TRUE(daemon_.Start());
    BusClient client;
    ASSERT_EQ(BusClientOpen(&client), 0);
    msqid_ds status;
    ASSERT_EQ(msgctl(client.queue, IPC_STAT, &status), 0);
    status.msg_qbytes = 16;  // less than a header
    ASSERT_EQ(msgctl(client.queue, IPC_SET, &status), 0);
    alignas(MessageHeader) char reply[kMessageMax];
    MessageHeader request = {};
    request.destination = kModuleKobd;
    request.message_class = kClassRequest;
    request.id = kUpdate;
    EXPECT_EQ(BusClientCall(&client, &request, reinterpret_cast<MessageHeader*>(reply), 1000), 8);
    BusClientClose(&client);
    EXPECT_TRUE(LogSays("to process " + std::to_string(getpid()) + " dropped"));
    EXPECT_EQ(Set("webHttpPort", "8082"), 0) << "others are served";
}
}  // namespace
}  // namespace kobd::test
