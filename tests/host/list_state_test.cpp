// Rows across a restart: what was committed comes back byte for byte, whatever happens to the
// process or the file.
#include "host/tables/list_state.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <random>

#include "dictionary/catalogue/accessors.h"
#include "host/tables/row_text.h"
#include "platform/kob_platform.h"
#include "tests/host/host_state.h"
#include "tests/process_setup.h"

namespace kobd::test
{
using namespace host;

namespace
{
class ListState : public HostState
{
protected:
    static void Write(const std::string& name, const std::string& text)
    {
        std::ofstream(Path(name), std::ios::binary) << text;
    }
    static size_t Asides() { return FilesLike(Path("tables.damaged")) + FilesLike(Path("objects.damaged")); }
    static ino_t Inode(const std::string& name)
    {
        struct stat status = {};
        return stat(Path(name).c_str(), &status) == 0 ? status.st_ino : 0;
    }
};

const TableOps& UrlOps() { return *Table("FwUrlFilterTable").ops; }

int32_t AddUrl(const std::string& url)
{
    std::vector<char> row(Table("FwUrlFilterTable").row_size);
    int32_t index = 0;
    EXPECT_EQ(UrlOps().add(&index), 0);
    memcpy(row.data() + kRowIndexBytes, url.c_str(), url.size() + 1);
    EXPECT_EQ(UrlOps().set(index, row.data()), 0);
    return index;
}

// "1=a 4=b": indexes and addresses of the filter.
std::string Urls()
{
    std::string urls;
    for (const Row& row : FindList("FwUrlFilterTable")->rows.Rows())
        urls += std::to_string(IndexOf(row)) + "=" + (row.block.data() + kRowIndexBytes) + " ";
    return urls;
}

std::string HttpPort()
{
    char value[kValueBuffer] = "";
    EXPECT_EQ(WebHttpPortGet(value), 0);
    return value;
}
}  // namespace

TEST_F(ListState, AnyBytesOfEveryKeptTableComeBack)
{
    std::mt19937 random(7);
    std::map<std::string, std::vector<std::vector<char>>> before;
    for (List& list : AllLists())
    {
        if (!list.kept) continue;
        const auto number = static_cast<size_t>(&list - AllLists().data());
        for (int i = 0; i < 3; ++i)
        {
            int32_t index = 0;
            if (ListAdd(number, &index) != 0) index = IndexOf(list.rows.Rows().back());
            std::vector<char> row(list.rows.RowSize());
            // All bytes, some bytes among zeros, and texts that fill their field to the last byte.
            for (char& byte : row)
                byte = i == 0 || (i == 1 && random() % 50 == 0) ? static_cast<char>(random())
                       : i == 2                                 ? static_cast<char>("a\n\\=#[] \r"[random() % 9])
                                                                : '\0';
            ASSERT_EQ(ListSet(number, index, row.data()), 0) << list.table;
        }
        for (const Row& row : list.rows.Rows()) before[list.table].push_back(row.block);
    }
    ASSERT_GT(before.size(), 70u);
    ASSERT_EQ(update_config(), 0);
    LoadState();
    for (const List& list : AllLists())
    {
        if (!list.kept) continue;
        std::vector<std::vector<char>> now;
        for (const Row& row : list.rows.Rows()) now.push_back(row.block);
        EXPECT_EQ(now, before[list.table]) << list.table;
    }
    EXPECT_EQ(Asides(), 0u);
}

TEST_F(ListState, EndOfALongerTextDoesNotStayBehindAShorterOne)
{
    const TableDef& users = Table("usersTable");
    std::vector<char> row(users.row_size);
    ASSERT_EQ(users.ops->get(1, row.data()), 0);
    const uint32_t password = FindColumn(*FindList("usersTable")->layout, "Password")->offset;
    strcpy(row.data() + password, "secret-of-old");
    ASSERT_EQ(users.ops->set(1, row.data()), 0);
    strcpy(row.data() + password, "new");
    ASSERT_EQ(users.ops->set(1, row.data()), 0);
    ASSERT_EQ(users.ops->get(1, row.data()), 0);
    EXPECT_EQ(std::string(row.data() + password, 256), "new" + std::string(253, '\0'));
    ASSERT_EQ(update_config(), 0);
    const std::string text = FileText(Path("tables"));
    EXPECT_NE(text.find("\nPassword=new\n"), std::string::npos) << text;
    EXPECT_EQ(text.find("\n@7"), std::string::npos) << "no bytes of the field besides: " << text;
}

TEST_F(ListState, CommittedIsKeptAndUncommittedIsLost)
{
    AddUrl("a.example.net");
    AddUrl("b.example.net");
    ASSERT_EQ(UrlOps().setPPath(2, "Device.Parental."), 0);
    ASSERT_EQ(update_config(), 0);
    AddUrl("c.example.net");
    ASSERT_EQ(UrlOps().del(1), 0);
    LoadState();
    EXPECT_EQ(Urls(), "1=a.example.net 2=b.example.net ");
    EXPECT_EQ(FindList("FwUrlFilterTable")->rows.Find(2)->parent_path, "Device.Parental.");

    ASSERT_EQ(UrlOps().del(2), 0);
    ASSERT_EQ(update_config(), 0);
    LoadState();
    EXPECT_EQ(AddUrl("d.example.net"), 3) << "no index comes back over a restart either";

    ASSERT_EQ(UrlOps().del(1), 0);
    ASSERT_EQ(UrlOps().del(3), 0);
    ASSERT_EQ(update_config(), 0);
    LoadState();
    EXPECT_EQ(Urls(), "") << "an emptied list stays empty";
}

TEST_F(ListState, RowsCountedFromZeroComeBack)
{
    const TableOps& apns = *Table("ApnConfigTable").ops;
    std::vector<char> row(Table("ApnConfigTable").row_size);
    ASSERT_EQ(apns.get(0, row.data()), 0);
    strcpy(row.data() + FindColumn(*FindList("ApnConfigTable")->layout, "ApnName")->offset, "internet-one");
    ASSERT_EQ(apns.set(0, row.data()), 0);
    ASSERT_EQ(update_config(), 0);
    LoadState();
    std::vector<char> got(row.size());
    ASSERT_EQ(apns.get(0, got.data()), 0);
    EXPECT_EQ(got, row);
    EXPECT_EQ(FindList("ApnConfigTable")->rows.Rows().size(), 4u);

    Write("tables", "[ApnConfigTable]\nend\n");
    for (int load = 0; load < 2; ++load)
    {
        LoadState();
        EXPECT_EQ(FindList("ApnConfigTable")->rows.Rows().size(), 0u) << "emptied by hand";
        AddUrl("a.example.net");
        ASSERT_EQ(update_config(), 0);
    }
    EXPECT_EQ(Asides(), 0u);
}

TEST_F(ListState, AnEmptiedListDoesNotFillWithFactoryRowsAgain)
{
    const TableOps& leases = *Table("DhcpStaticAddressTable").ops;
    ASSERT_EQ(leases.del(1), 0);
    ASSERT_EQ(update_config(), 0);
    LoadState();
    EXPECT_EQ(FindList("DhcpStaticAddressTable")->rows.Rows().size(), 0u);
    EXPECT_FALSE(FindList("usersTable")->rows.Rows().empty()) << "lists nobody touched have the factory's rows";
}

TEST_F(ListState, OnlyWhatChangedIsWritten)
{
    ASSERT_EQ(update_config(), 0);
    EXPECT_FALSE(Exists("objects") || Exists("tables")) << "nothing changed";
    std::vector<char> row(Table("usersTable").row_size);
    ASSERT_EQ(Table("usersTable").ops->get(1, row.data()), 0);
    ASSERT_EQ(Table("usersTable").ops->set(1, row.data()), 0);
    ASSERT_EQ(update_config(), 0);
    EXPECT_FALSE(Exists("tables")) << "set to what it was";

    webHttpPortSet("8080");
    ASSERT_EQ(update_config(), 0);
    EXPECT_TRUE(Exists("objects") && !Exists("tables")) << "an object costs no table";
    const ino_t objects = Inode("objects");
    AddUrl("a.example.net");
    ASSERT_EQ(update_config(), 0);
    EXPECT_EQ(Inode("objects"), objects) << "a row costs no object";
    const std::string text = FileText(Path("tables"));
    EXPECT_NE(text.find("[FwUrlFilterTable 1]\nURL=a.example.net\n"), std::string::npos) << text;
    EXPECT_EQ(text.find("usersTable"), std::string::npos) << "nor lists that are the factory's";
    const ino_t tables = Inode("tables");
    ASSERT_EQ(update_config(), 0);
    EXPECT_EQ(Inode("tables"), tables) << "nothing new";
    EXPECT_FALSE(Exists("commit") || Exists("tables.new") || Exists("objects.new"));
}

TEST_F(ListState, FailedWriteKeepsTheOldStateAndIsTriedAgain)
{
    AddUrl("old.example.net");
    webHttpPortSet("8080");
    ASSERT_EQ(update_config(), 0);
    AddUrl("new.example.net");
    webHttpPortSet("8081");
    for (const char* blocked : {"tables.new", "commit.new"})
    {
        ASSERT_EQ(mkdir(Path(blocked).c_str(), 0700), 0);
        const OutputCapture output;
        EXPECT_EQ(update_config(), 14) << blocked;
        EXPECT_NE(output.Text().find("cannot write the state"), std::string::npos) << blocked;
        EXPECT_NE(FileText(Path("tables")).find("old.example.net"), std::string::npos);
        EXPECT_EQ(FileText(Path("tables")).find("new.example.net"), std::string::npos) << blocked;
        EXPECT_NE(FileText(Path("objects")).find("=8080"), std::string::npos) << "both or none: " << blocked;
        EXPECT_FALSE(Exists("objects.new")) << blocked;
        ASSERT_EQ(rmdir(Path(blocked).c_str()), 0);
    }
    EXPECT_EQ(update_config(), 0) << "what could not be written is still to be";
    LoadState();
    EXPECT_EQ(Urls(), "1=old.example.net 2=new.example.net ");
    EXPECT_EQ(HttpPort(), "8081");
}

TEST_F(ListState, ProcessDeadBetweenTheStepsOfACommit)
{
    const std::string old_tables = "[FwUrlFilterTable 1]\nURL=old\nend\n";
    const std::string new_tables = "[FwUrlFilterTable 1]\nURL=new\nend\n";
    const struct
    {
        std::map<std::string, std::string> files;  // beside the old objects and tables
        bool is_new;
        const char* why;
    } kCases[] = {
        {{{"objects.new", "webHttpPort=80"}}, false, "while the first was written"},
        {{{"objects.new", "webHttpPort=8081\nend\n"}, {"tables.new", "[Fw"}}, false, "while the second was written"},
        {{{"objects.new", "webHttpPort=8081\nend\n"}, {"tables.new", new_tables}}, false, "before the note"},
        {{{"objects.new", "webHttpPort=8081\nend\n"}, {"tables.new", new_tables}, {"commit.new", "objects=\n"}},
         false,
         "while the note was written"},
        {{{"objects.new", "webHttpPort=8081\nend\n"},
          {"tables.new", new_tables},
          {"commit", "objects=\ntables=\nend\n"}},
         true,
         "after the note"},
        {{{"objects", "webHttpPort=8081\nend\n"}, {"tables.new", new_tables}, {"commit", "objects=\ntables=\nend\n"}},
         true,
         "after the first move"},
        {{{"objects", "webHttpPort=8081\nend\n"}, {"tables", new_tables}, {"commit", "objects=\ntables=\nend\n"}},
         true,
         "before the note was removed"},
    };
    for (const auto& c : kCases)
    {
        Clear();
        Write("objects", "webHttpPort=8080\nend\n");
        Write("tables", old_tables);
        for (const auto& [name, text] : c.files) Write(name, text);
        LoadState();
        EXPECT_EQ(Urls(), c.is_new ? "1=new " : "1=old ") << c.why;
        EXPECT_EQ(HttpPort(), c.is_new ? "8081" : "8080") << c.why;
        EXPECT_FALSE(Exists("commit")) << c.why;
        AddUrl("next");
        webHttpPortSet("8082");
        EXPECT_EQ(update_config(), 0) << "and life goes on: " << c.why;
        LoadState();
        EXPECT_EQ(HttpPort(), "8082") << c.why;
    }
}

TEST_F(ListState, KilledAtAnyMomentObjectsAndRowsAreOfOneCommit)
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
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
        {
            for (int number = last + 1;; ++number)
            {
                UrlOps().del(FindList("FwUrlFilterTable")->rows.LastIndex());
                AddUrl(std::to_string(number));
                webHttpPortSet(std::to_string(number).c_str());
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
        EXPECT_GT(std::stoi(HttpPort()), last) << "nothing committed was lost";
        last = std::stoi(HttpPort());
    }
    EXPECT_EQ(Asides(), 0u);
}

TEST_F(ListState, FileCutAnywhereIsKeptAsideAndTheFactoryRowsServe)
{
    AddUrl("a.example.net");
    ASSERT_EQ(Table("usersTable").ops->del(2), 0);
    ASSERT_EQ(update_config(), 0);
    const std::string whole = FileText(Path("tables"));
    for (size_t cut = 0; cut < whole.size(); ++cut)
    {
        Clear();
        Write("tables", whole.substr(0, cut));
        const OutputCapture output;
        ListsLoad(Path("tables"));
        EXPECT_EQ(Urls(), "") << cut;
        EXPECT_EQ(FindList("usersTable")->rows.Rows().size(), 2u) << cut;
        EXPECT_EQ(Asides(), 1u) << cut;
        EXPECT_NE(output.Text().find("is damaged"), std::string::npos) << cut;
    }
}

TEST_F(ListState, LinesThatCannotBe)
{
    const std::string begin = "[FwUrlFilterTable]\n@last=3\n[FwUrlFilterTable 2]\nURL=a\n";
    const struct
    {
        const char* why;
        std::vector<std::string> more;
    } kCases[] = {
        {"a text longer than its column", {"URL=" + std::string(128, 'u') + "\n"}},
        {"no address", {"[IpMacBindTable 1]\nMAC=00:00:5E:00:53\n", "[IpMacBindTable 1]\nIP=192.0.2.256\n"}},
        {"a word for a number", {"[usersTable 1]\nEnable=yes\n"}},
        {"out of range", {"[node_595Table 1]\nMaxMTUSize=-1\n", "[node_595Table 1]\nMaxMTUSize=99999999999\n"}},
        {"an index twice or out of order", {"[FwUrlFilterTable 2]\nURL=b\n", "[FwUrlFilterTable 1]\nURL=b\n"}},
        {"no index", {"[FwUrlFilterTable 0]\n", "[FwUrlFilterTable -1]\n", "[FwUrlFilterTable 3 ]\n"}},
        {"an index that does not fit", {"[FwUrlFilterTable 99999999999]\n"}},
        {"bytes outside the row", {"@260=00\n", "@258=0000ff\n", "@99999999999999999999=00\n", "@2=0000\n"}},
        {"no byte", {"@200=0\n", "@200=\n", "@200=0G\n"}},
        {"no highest index", {"[FwUrlFilterTable]\n@last=x\n"}},
        {"a column without a row", {"[FwUrlFilterTable]\nURL=b\n"}},
    };
    for (const auto& c : kCases)
        for (const std::string& more : c.more)
        {
            Clear();
            Write("tables", begin + more + "end\n");
            const OutputCapture output;
            ListsLoad(Path("tables"));
            EXPECT_EQ(Urls(), "") << c.why;
            EXPECT_EQ(Asides(), 1u) << c.why;
            EXPECT_NE(output.Text().find("cannot be: ["), std::string::npos) << c.why << ": " << output.Text();
        }
    Write("tables", "URL=a\nend\n");
    LoadState();
    EXPECT_EQ(Urls(), "") << "a line before any heading";
}

TEST_F(ListState, WhatThisBuildDoesNotKnowStaysInTheFile)
{
    Write("tables",
          "[FwUrlFilterTable 2]\nURL=a\nColour=red\n@later=1\n[SmsTable 1]\nTag=1\n[NewTable]\n@last=9\n"
          "[NewTable 9]\nX=1\nend\n");
    {
        const OutputCapture output;
        LoadState();
        for (const char* said : {"no column Colour", "[NewTable]", "[NewTable 9]", "[SmsTable 1]"})
            EXPECT_NE(output.Text().find(said), std::string::npos) << said;
    }
    EXPECT_EQ(Urls(), "2=a ");
    EXPECT_EQ(FindList("SmsTable")->rows.Rows().size(), 4u) << "rows nobody can set are the factory's";
    EXPECT_EQ(AddUrl("b"), 3);
    ASSERT_EQ(update_config(), 0);
    const std::string text = FileText(Path("tables"));
    for (const char* kept : {"[FwUrlFilterTable 2]\nURL=a\nColour=red\n@later=1\n", "[SmsTable 1]\nTag=1\n",
                             "[NewTable]\n@last=9\n[NewTable 9]\nX=1\n"})
        EXPECT_NE(text.find(kept), std::string::npos) << kept << "in\n" << text;
    LoadState();
    EXPECT_EQ(Urls(), "2=a 3=b ");
}
}  // namespace kobd::test
