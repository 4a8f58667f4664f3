// The stores that processes share: every get sees the last set of any process, no set is lost.
#include "host/state/shared_store.h"

#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fcntl.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/namespaces.h"
#include "tests/process_setup.h"

namespace kobd::test
{
using namespace host;

namespace
{
constexpr FactoryValue kFactory[] = {{"factory", "as made"}, {"nothing", ""}};

class Store : public testing::Test
{
protected:
    // The folder is chosen once a process: here, unless an earlier test did.
    static void SetUpTestSuite() { setenv("KOBD_STATE_DIR", "/tmp/kobd_store_test", 0); }

    void SetUp() override
    {
        SKIP_WITHOUT_NAMESPACES();  // else the folder would stay behind
        for (const auto& file : std::filesystem::directory_iterator(StateFolder()))
            if (file.path().string().starts_with(path_)) std::filesystem::remove_all(file);
    }

    std::string Get(const char* key) const
    {
        char value[4096] = "left over";
        return store_.Get(key, value, sizeof value) == 0 ? value : "unknown:" + std::string(value);
    }

    void Write(const std::string& text) const { std::ofstream(path_, std::ios::binary) << text; }

    const SharedStore store_{"store_test", kFactory};
    const std::string path_ = StateFolder() + "/store_test";
};

TEST_F(Store, WhatWasSetIsGot)
{
    const struct
    {
        const char* key;
        std::string value;
        int result;
        const char* why;
    } kCases[] = {
        {"a", "1", 0, "a key that was not there"},
        {"factory", "changed", 0, "over the factory's"},
        {"factory", "as made", 0, "back to the factory's"},
        {"nothing", "", 0, "the empty text is a value"},
        {"a", "", 0, "so it is over another one"},
        {"cellular.roaming.enable", "a=b # c \\ \n\r", 0, "any text is a value"},
        {"end", "end", 0, "what ends the file"},
        {"longest", std::string(kStoreValueMax, 'x'), 0, "the longest value"},
        {"long", std::string(kStoreValueMax + 1, 'x'), -1, "one above"},
        {"", "1", -1, "no key"},
        {"a=b", "1", -1, "a key that would read back as another"},
        {"#a", "1", -1, "would be a comment"},
        {"a\nb", "1", -1, "would be two lines"},
        {"a b", "1", -1, "a blank"},
    };
    for (const auto& c : kCases)
    {
        EXPECT_EQ(store_.Set(c.key, c.value.c_str()), c.result) << c.why;
        EXPECT_EQ(Get(c.key), c.result == 0 ? c.value : "unknown:") << c.why;
    }
    EXPECT_EQ(Get("longest").size(), kStoreValueMax) << "earlier values stay";
}

TEST_F(Store, GetCutsToTheBufferAndEmptiesItForAnUnknownKey)
{
    char value[8] = "1234567";
    EXPECT_EQ(store_.Get("factory", value, 4), 0);
    EXPECT_EQ(std::string(value, 8), std::string("as \0"
                                                 "567\0",
                                                 8));
    EXPECT_EQ(store_.Get("unknown", value, 1), -1);
    EXPECT_EQ(value[0], 0);
}

TEST_F(Store, SetThatChangesNothingWritesNothing)
{
    EXPECT_EQ(store_.Set("factory", "as made"), 0);
    EXPECT_FALSE(std::filesystem::exists(path_));
    ASSERT_EQ(store_.Set("a", "1"), 0);
    const auto written = std::filesystem::last_write_time(path_);
    EXPECT_EQ(store_.Set("a", "1"), 0);
    EXPECT_EQ(std::filesystem::last_write_time(path_), written);
}

TEST_F(Store, HandEditedFile)
{
    Write("# by hand\na=1\nfactory=mine\na=2\nend\n");
    EXPECT_EQ(Get("a"), "2") << "the last line counts";
    EXPECT_EQ(Get("factory"), "mine");
    EXPECT_EQ(store_.Set("a", "3"), 0);
    EXPECT_EQ(Get("a"), "3");
}

TEST_F(Store, DamagedFileIsKeptAsideAndReported)
{
    for (const bool by_set : {false, true})
    {
        Write("factory=mine\nen");
        const OutputCapture output;
        if (by_set)
            EXPECT_EQ(store_.Set("a", "1"), 0);
        else
            EXPECT_EQ(Get("factory"), "as made");
        EXPECT_EQ(Get("a"), by_set ? "1" : "unknown:");
        EXPECT_NE(output.Text().find("store_test is damaged, kept as " + path_ + ".damaged-"), std::string::npos);
    }
    int aside = 0;
    for (const auto& file : std::filesystem::directory_iterator(StateFolder()))
        if (file.path().string().starts_with(path_ + ".damaged-"))
            aside += FileText(file.path().string()) == "factory=mine\nen";
    EXPECT_EQ(aside, 2);
}

TEST_F(Store, FileThatCannotBeReadIsNeverReplaced)
{
    ASSERT_EQ(mkdir(path_.c_str(), 0700), 0);  // reading a folder fails for root too
    const OutputCapture output;
    EXPECT_EQ(Get("factory"), "as made");
    EXPECT_EQ(store_.Set("a", "1"), -1);
    EXPECT_TRUE(std::filesystem::is_directory(path_));
    EXPECT_NE(output.Text().find("cannot read " + path_), std::string::npos);
    EXPECT_NE(output.Text().find("cannot write " + path_ + ": Is a directory"), std::string::npos);
}

TEST_F(Store, ConcurrentSettersLoseNothing)
{
    constexpr int kProcesses = 6;
    constexpr int kSets = 25;
    std::vector<pid_t> setters;
    for (int process = 0; process < kProcesses; ++process)
    {
        setters.push_back(fork());
        if (setters.back() != 0) continue;
        int failed = 0;
        for (int i = 0; i < kSets; ++i)
            failed += store_.Set(("p" + std::to_string(process) + "." + std::to_string(i)).c_str(), "set") != 0;
        _exit(failed);
    }
    for (const pid_t setter : setters)
    {
        int status = 0;
        waitpid(setter, &status, 0);
        EXPECT_EQ(status, 0) << "a set failed";
    }
    for (int process = 0; process < kProcesses; ++process)
        for (int i = 0; i < kSets; ++i)
            EXPECT_EQ(Get(("p" + std::to_string(process) + "." + std::to_string(i)).c_str()), "set");
}

TEST_F(Store, SettersKilledAtAnyMomentLeaveAWholeFileAndNoLock)
{
    ASSERT_EQ(store_.Set("kept", "1"), 0);
    for (int round = 0; round < 30; ++round)
    {
        const pid_t victim = fork();
        if (victim == 0)
            for (int i = 0;; ++i) store_.Set("victim", std::to_string(i).c_str());
        usleep(static_cast<useconds_t>(round * 300));
        kill(victim, SIGKILL);
        waitpid(victim, nullptr, 0);
        ASSERT_EQ(Get("kept"), "1") << round;
        ASSERT_EQ(store_.Set("round", std::to_string(round).c_str()), 0) << round;
    }
}

TEST_F(Store, WhatRootSetsInTheFolderOfAUserIsThatUsers)
{
    constexpr uid_t kUser = 65534;
    if (geteuid() != 0 || chown(StateFolder().c_str(), kUser, kUser) != 0) GTEST_SKIP() << "no second user here";
    EXPECT_EQ(store_.Set("a", "of root"), 0);
    for (const char* file : {"", ".lock"})
    {
        struct stat state = {};
        EXPECT_EQ(stat((path_ + file).c_str(), &state), 0) << file;
        EXPECT_EQ(state.st_uid, kUser) << file;
    }
    std::filesystem::remove(path_ + ".lock");
    std::filesystem::create_symlink("/etc/passwd", path_ + ".lock");
    EXPECT_EQ(store_.Set("a", "through a link"), -1) << "a link of the user's leads root nowhere";
    EXPECT_EQ(chown(StateFolder().c_str(), 0, 0), 0);
}

TEST_F(Store, AStoppedSetterDelaysOthersByTwoSecondsAtMost)
{
    const int lock = open((path_ + ".lock").c_str(), O_RDWR | O_CREAT, 0600);
    ASSERT_EQ(flock(lock, LOCK_EX), 0);
    const OutputCapture output;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(store_.Set("a", "1"), -1);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10)) << "two, and a busy machine";
    EXPECT_NE(output.Text().find("cannot lock " + path_), std::string::npos);
    EXPECT_EQ(Get("a"), "unknown:");
    close(lock);
    EXPECT_EQ(store_.Set("a", "1"), 0);
}
}  // namespace
}  // namespace kobd::test
