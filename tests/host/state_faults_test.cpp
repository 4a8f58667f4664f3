// The state when something happens to it: other processes, kills, damaged and missing files, root in a user's folder.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <random>

#include "host/state/stores.h"
#include "platform/config.h"
#include "platform/kob_platform.h"
#include "tests/host/state_fixture.h"

namespace kobd::test
{
namespace
{
// A store's value and the objects of one request become durable together.
TEST_F(StateTest, StoresAreSharedAndCommittedWithTheRequest)
{
    const struct
    {
        const char* key;
        std::string value;
        int result;
        const char* why;
    } kCases[] = {
        {"a", "1", 0, "a key that was not there"},
        {"eth_status", "1", 0, "over the factory's"},
        {"eth_status", "0", 0, "back to the factory's"},
        {"a", "", 0, "the empty text is a value"},
        {"cellular.roaming.enable", "a=b # c \\ \n\r\xFF", 0, "any text is a value"},
        {"longest", std::string(kStoreValueMax, 'x'), 0, "the longest value"},
        {"long", std::string(kStoreValueMax + 1, 'x'), -1, "one above"},
        {"", "1", -1, "no key"},
        {"a=b", "1", -1, "would be read as another at a terminal"},
        {"a\nb", "1", -1, "a line end"},
        {"a b", "1", -1, "a blank"},
    };
    for (const bool waits : {false, true})
        for (const auto& c : kCases)
        {
            StoresBeginRequest(0, waits);
            EXPECT_EQ(nvram_set(c.key, c.value.c_str()), c.result) << c.why;
            EXPECT_EQ(Nvram(c.key), c.result == 0 ? c.value : "unknown:") << c.why;
        }
    StoresEndRequest();
    ASSERT_EQ(update_config(), 0);
    char value[8] = "1234567";
    EXPECT_EQ(nv_get("main_status", value, 4), 0) << "cut to the buffer";
    EXPECT_EQ(std::string(value, 8), std::string("con\0"
                                                 "567\0",
                                                 8));
    EXPECT_EQ(kob_set_config("a", "of config"), 0);
    EXPECT_EQ(Nvram("a"), "") << "two stores";

    StoresBeginRequest(0, true);
    ASSERT_EQ(nvram_set("a", "2"), 0);
    webHttpPortSet("8081");
    EXPECT_EQ(Sql("SELECT value FROM stores WHERE store='nvram' AND key='a'"), "\n") << "not yet";
    ASSERT_EQ(update_config(), 0);
    EXPECT_EQ(Sql("SELECT count(DISTINCT batch) FROM history WHERE new IN ('2', '8081')"), "1\n");
    StoresEndRequest();
    Sql("UPDATE stores SET value = 'of another process' WHERE store='nvram' AND key='a'");
    EXPECT_EQ(Nvram("a"), "of another process");
}

TEST_F(StateTest, ManyProcessesLoseNothingAndNobodyWaitsForLong)
{
    constexpr int kProcesses = 6;
    constexpr int kSets = 25;
    State()->Close();  // no connection crosses a fork
    std::vector<pid_t> setters;
    for (int process = 0; process < kProcesses; ++process)
    {
        setters.push_back(fork());
        if (setters.back() != 0) continue;
        int failed = 0;
        for (int i = 0; i < kSets; ++i)
            failed += nvram_set(("p" + std::to_string(process) + "." + std::to_string(i)).c_str(), "set") != 0;
        _exit(failed);
    }
    for (const pid_t setter : setters)
    {
        int status = 0;
        waitpid(setter, &status, 0);
        EXPECT_EQ(status, 0) << "a set failed";
    }
    EXPECT_EQ(Sql("SELECT count(*) FROM stores WHERE value = 'set'"), std::to_string(kProcesses * kSets) + "\n");

    sqlite3* stopped = nullptr;  // in the middle of a transaction
    ASSERT_EQ(sqlite3_open(Path("kobd.db").c_str(), &stopped), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(stopped, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    const OutputCapture output;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(nvram_set("a", "1"), -1);
    webHttpPortSet("8081");
    EXPECT_EQ(update_config(), 14);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15)) << "two each, and a busy machine";
    EXPECT_NE(output.Text().find("another process has been writing it for two seconds"), std::string::npos);
    EXPECT_EQ(Nvram("a"), "unknown:") << "and reading waits for nobody";
    EXPECT_NE(WhyNotSaved(), "");
    sqlite3_close(stopped);
    EXPECT_EQ(update_config(), 0) << "caught up";
    EXPECT_EQ(WhyNotSaved(), "");
}

TEST_F(StateTest, KilledAtAnyMomentObjectsRowsAndStoresAreOfOneCommit)
{
    AddUrl("0");
    webHttpPortSet("0");
    ASSERT_EQ(update_config(), 0);
    std::mt19937 random(11);
    int last = 0;
    for (int round = 0; round < 40; ++round)
    {
        int committed[2];
        ASSERT_EQ(pipe2(committed, O_CLOEXEC), 0);
        State()->Close();
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
        {
            StoresBeginRequest(0, true);
            for (int number = last + 1;; ++number)
            {
                UrlOps().del(FindList("FwUrlFilterTable")->rows.LastIndex());
                AddUrl(std::to_string(number));
                webHttpPortSet(std::to_string(number).c_str());
                nvram_set("number", std::to_string(number).c_str());
                if (update_config() != 0 || write(committed[1], "", 1) != 1) _exit(1);
            }
        }
        // A disk may be slow: the time to the kill begins with the first commit.
        char byte = 0;
        close(committed[1]);
        ASSERT_EQ(read(committed[0], &byte, 1), 1) << "no commit failed";
        usleep(random() % 4000);
        kill(child, SIGKILL);
        close(committed[0]);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "no commit failed";
        LoadState();
        ASSERT_EQ(FindList("FwUrlFilterTable")->rows.Rows().size(), 1u);
        const Row& row = FindList("FwUrlFilterTable")->rows.Rows().front();
        ASSERT_STREQ(row.block.data() + kRowIndexBytes, HttpPort().c_str());
        ASSERT_EQ(Nvram("number"), HttpPort());
        EXPECT_GT(std::stoi(HttpPort()), last) << "nothing committed was lost";
        last = std::stoi(HttpPort());
    }
    EXPECT_EQ(Asides(), 0u);
}

TEST_F(StateTest, ADamagedDatabaseIsKeptAsideAndTheFactoryServes)
{
    AddUrl("a.example.net");
    webHttpPortSet("8081");
    ASSERT_EQ(update_config(), 0);
    const std::string whole = WholeFile();
    std::vector<std::pair<std::string, std::string>> damaged = {
        {"noise", std::string(20000, 'n')}, {"a text", "webHttpPort=80\n"}, {"zeros", std::string(8192, '\0')}};
    for (size_t page = 4096; page < whole.size(); page += 4096)
        damaged.emplace_back("cut at " + std::to_string(page), whole.substr(0, page));
    damaged.emplace_back("cut in a page", whole.substr(0, 5000));
    damaged.emplace_back("noise behind the first page", whole.substr(0, 4096) + std::string(whole.size() - 4096, 'n'));
    damaged.emplace_back("a folder", "");
    for (const auto& [why, bytes] : damaged)
    {
        SCOPED_TRACE(why);
        State()->Close();
        Clear();
        if (why == "a folder")
            mkdir(Path("kobd.db").c_str(), 0700);
        else
            Write(bytes);
        const OutputCapture output;
        LoadState();
        EXPECT_EQ(Urls(), "");
        EXPECT_EQ(HttpPort(), "80");
        EXPECT_EQ(Asides(), 1u);
        EXPECT_NE(output.Text().find("is damaged, kept as " + Path("kobd.db.damaged-")), std::string::npos)
            << output.Text();
        webHttpPortSet("8082");
        EXPECT_EQ(update_config(), 0);
        LoadState();
        EXPECT_EQ(HttpPort(), "8082");
    }
    State()->Close();
    Clear();
    Write("");
    const OutputCapture output;
    LoadState();
    EXPECT_NE(output.Text().find("is empty, factory values serve"), std::string::npos) << output.Text();
    EXPECT_EQ(update_config(), 0);
}

// Whatever happens to the files while the daemon runs: it serves, tells, and the next commit that can be written has
// all that was committed before.
TEST_F(StateTest, FilesThatAreTakenAwayUnderTheDaemonAreMadeAgain)
{
    const std::pair<const char*, std::string> kWays[] = {
        {"the folder is removed", "rm -rf FOLDER"},
        {"the database is removed", "rm FOLDER/kobd.db"},
        {"another file has its name", "head -c 20000 /dev/urandom >FOLDER/x && mv FOLDER/x FOLDER/kobd.db"},
        {"an empty file has its name", "rm FOLDER/kobd.db* && touch FOLDER/kobd.db"},
        {"a folder has its name", "rm FOLDER/kobd.db* && mkdir FOLDER/kobd.db"},
    };
    for (size_t i = 0; i < 3 * std::size(kWays); ++i)
    {
        const auto& [why, way] = kWays[i / 3];
        SCOPED_TRACE(why);
        Clear();
        LoadState();
        webHttpPortSet("8081");
        AddUrl("a.example.net");
        ASSERT_EQ(Table("usersTable").ops->del(2), 0);
        ASSERT_EQ(update_config(), 0);
        std::string command = way;
        for (size_t at; (at = command.find("FOLDER")) != std::string::npos;) command.replace(at, 6, StateFolder());
        ASSERT_EQ(system(command.c_str()), 0);
        const OutputCapture output;
        EXPECT_EQ(HttpPort(), "8081") << "it serves from memory";
        if (i % 3 == 1)
        {
            EXPECT_EQ(Nvram("eth_status"), "0") << "a store is read meanwhile";
        }
        if (i % 3 == 2)
        {
            EXPECT_EQ(nvram_set("eth_status", "1"), 0) << "or set";
        }
        webHttpEnableSet("0");
        EXPECT_EQ(update_config(), 0) << output.Text();
        LoadState();
        EXPECT_EQ(HttpPort(), "8081");
        EXPECT_EQ(Urls(), "1=a.example.net ");
        EXPECT_EQ(FindList("usersTable")->rows.Rows().size(), 1u);
        EXPECT_EQ(FindList("DhcpStaticAddressTable")->rows.Rows().size(), 1u) << "of the factory";
    }
}

TEST_F(StateTest, WhatRootMakesInTheFolderOfAUserIsThatUsers)
{
    constexpr uid_t kUser = 65534;
    if (geteuid() != 0 || chown(StateFolder().c_str(), kUser, kUser) != 0) GTEST_SKIP() << "no second user here";
    State()->Close();
    Clear();
    EXPECT_EQ(nvram_set("a", "of root"), 0);
    for (const char* file : {"kobd.db", "kobd.db-wal", "kobd.db-shm"})
    {
        struct stat state = {};
        EXPECT_EQ(stat(Path(file).c_str(), &state), 0) << file;
        EXPECT_EQ(state.st_uid, kUser) << file;
        EXPECT_EQ(state.st_mode & 0777, 0600u) << "it holds passwords: " << file;
    }
    State()->Close();
    Clear();
    std::filesystem::create_symlink("/tmp/led-astray", Path("kobd.db"));
    const OutputCapture output;
    EXPECT_EQ(nvram_set("a", "through a link"), 0);
    EXPECT_FALSE(std::filesystem::exists("/tmp/led-astray")) << "a link of the user's leads root nowhere";
    EXPECT_EQ(chown(StateFolder().c_str(), 0, 0), 0);
}

TEST_F(StateTest, TheJournalIsMovedAsideWhenItIsLargeAndBothStayBounded)
{
    const std::string journal = StateFolder() + "/journal";
    const std::string line(100000, 'x');
    for (int number = 0; number < 35; ++number) Journal(std::to_string(number) + line);
    const auto kept = std::filesystem::file_size(journal) + std::filesystem::file_size(journal + ".1");
    EXPECT_GT(kept, 1u << 20) << "what happened last is there";
    EXPECT_LT(kept, (2u << 20) + line.size());
    EXPECT_EQ(FileText(journal).substr(0, 2), "33") << "a line is whole in one of the two";
}
}  // namespace
}  // namespace kobd::test
