// The database of the state folder: what was committed comes back byte for byte, and nothing else is written.
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <random>

#include "host/tables/row_cells.h"
#include "platform/kob_platform.h"
#include "tests/host/state_fixture.h"

namespace kobd::test
{
namespace
{
TEST_F(StateTest, AnyBytesOfEveryKeptTableComeBack)
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
    const std::string text = "\xE4\xB8\xAD\xFF\x01\n\\ end='\"; DROP TABLE objects; --";
    devHostNameSet(text.c_str());
    ASSERT_EQ(update_config(), 0);
    LoadState();
    char value[kValueBuffer];
    ASSERT_EQ(devHostNameGet(value), 0);
    EXPECT_EQ(value, text);
}

TEST_F(StateTest, EndOfALongerTextDoesNotStayBehindAShorterOne)
{
    const TableDef& users = Table("usersTable");
    std::vector<char> row(users.row_size);
    ASSERT_EQ(users.ops->get(1, row.data()), 0);
    const uint32_t password = FindColumn(*FindList("usersTable")->layout, "Password")->offset;
    for (const char* text : {"secret-of-old", "new"})
    {
        strcpy(row.data() + password, text);
        ASSERT_EQ(users.ops->set(1, row.data()), 0);
    }
    ASSERT_EQ(users.ops->get(1, row.data()), 0);
    EXPECT_EQ(std::string(row.data() + password, 256), "new" + std::string(253, '\0'));
    ASSERT_EQ(update_config(), 0);
    EXPECT_EQ(Sql("SELECT value FROM cells WHERE list='usersTable' AND number=1 AND field IN ('', 'Password')"),
              "\nnew\n");
}

TEST_F(StateTest, CommittedIsKeptAndUncommittedIsLost)
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

    for (const int32_t index : {1, 3}) ASSERT_EQ(UrlOps().del(index), 0);
    ASSERT_EQ(Table("DhcpStaticAddressTable").ops->del(1), 0);
    const TableOps& apns = *Table("ApnConfigTable").ops;  // counts from 0
    std::vector<char> apn(Table("ApnConfigTable").row_size);
    ASSERT_EQ(apns.get(0, apn.data()), 0);
    strcpy(apn.data() + FindColumn(*FindList("ApnConfigTable")->layout, "ApnName")->offset, "internet-one");
    ASSERT_EQ(apns.set(0, apn.data()), 0);
    ASSERT_EQ(update_config(), 0);
    LoadState();
    EXPECT_EQ(Urls(), "") << "an emptied list stays empty";
    EXPECT_TRUE(FindList("DhcpStaticAddressTable")->rows.Rows().empty()) << "of the factory's rows, too";
    std::vector<char> got(apn.size());
    ASSERT_EQ(apns.get(0, got.data()), 0);
    EXPECT_EQ(got, apn);
    EXPECT_EQ(FindList("ApnConfigTable")->rows.Rows().size(), 4u) << "the other rows are still the factory's";
    EXPECT_EQ(Asides(), 0u);
}

TEST_F(StateTest, OnlyWhatChangedIsWritten)
{
    std::vector<char> row(Table("usersTable").row_size);
    ASSERT_EQ(Table("usersTable").ops->get(1, row.data()), 0);
    ASSERT_EQ(Table("usersTable").ops->set(1, row.data()), 0);
    ASSERT_EQ(update_config(), 0);
    EXPECT_EQ(Sql("SELECT count(*) FROM history"), "0\n") << "set to what it was";
    webHttpPortSet("8080");
    AddUrl("a.example.net");
    AddUrl("b.example.net");
    ASSERT_EQ(update_config(), 0);
    webHttpPortSet("80");
    ASSERT_EQ(UrlOps().del(1), 0);
    wifiKey0Set("hidden-from-history");
    ASSERT_EQ(update_config(), 0);
    EXPECT_EQ(Sql("SELECT batch, kind, name, number, field, old, new FROM history ORDER BY id"),
              "1|object|webHttpPort|0||80|8080\n"
              "1|row|FwUrlFilterTable|1||NULL|\n1|row|FwUrlFilterTable|1|URL|NULL|a.example.net\n"
              "1|row|FwUrlFilterTable|2||NULL|\n1|row|FwUrlFilterTable|2|URL|NULL|b.example.net\n"
              "2|object|webHttpPort|0||8080|80\n2|object|wifiKey0|0||(secret)|(secret)\n"
              "2|row|FwUrlFilterTable|1|||NULL\n2|row|FwUrlFilterTable|1|URL|a.example.net|NULL\n");
    EXPECT_EQ(Sql("SELECT name FROM objects"), "wifiKey0\n") << "what is the factory's again is not kept";
    EXPECT_EQ(Sql("SELECT DISTINCT list FROM cells"), "FwUrlFilterTable\n") << "nor lists that are the factory's";

    Sql("WITH RECURSIVE n(i) AS (SELECT 10 UNION ALL SELECT i + 1 FROM n WHERE i < 10050)"
        " INSERT INTO history(id, batch) SELECT i, i FROM n");
    webHttpPortSet("8081");
    ASSERT_EQ(update_config(), 0);
    EXPECT_EQ(Sql("SELECT count(*), max(batch) FROM history"), "10000|10051\n");
}

TEST_F(StateTest, WhatThisBuildDoesNotKnowOrHoldStaysInTheDatabase)
{
    AddUrl("a");
    ASSERT_EQ(update_config(), 0);
    Sql("INSERT INTO objects VALUES('newObject', '1');"
        "INSERT INTO lists VALUES('NewTable', 9); INSERT INTO cells VALUES('NewTable', 9, '', ''), ('NewTable', 9, "
        "'X', "
        "'1');"
        "INSERT INTO lists VALUES('SmsTable', 9); INSERT INTO cells VALUES('SmsTable', 9, '', '');"
        "INSERT INTO cells VALUES('FwUrlFilterTable', 1, 'Colour', 'red'), ('FwUrlFilterTable', -2, '', ''),"
        " ('FwUrlFilterTable', 99999999999, '', '')");
    {
        const OutputCapture output;
        LoadState();
        for (const char* said : {"objects are not known here, newObject for one", "NewTable", "SmsTable",
                                 "no column Colour", "row -2 cannot be", "row 99999999999 cannot be"})
            EXPECT_NE(output.Text().find(said), std::string::npos) << said << " in " << output.Text();
    }
    EXPECT_EQ(FindList("SmsTable")->rows.Rows().size(), 4u) << "rows that nobody can set are the factory's";
    SetUrl(1, "b");
    webHttpPortSet("8080");
    ASSERT_EQ(update_config(), 0);
    EXPECT_EQ(Sql("SELECT count(*) FROM objects; SELECT count(*) FROM cells WHERE list LIKE '%mstable' OR list LIKE "
                  "'newtable'; SELECT value FROM cells WHERE field IN ('Colour', 'URL') ORDER BY field"),
              "2\n3\nred\nb\n");

    const struct
    {
        const char* list;
        const char* field;
        const char* value;
    } kCannot[] = {{"IpMacBindTable", "MAC", "00:00:5E:00:53"},
                   {"IpMacBindTable", "IP", "192.0.2.256"},
                   {"usersTable", "Enable", "yes"},
                   {"node_595Table", "MaxMTUSize", "-1"},
                   {"node_595Table", "MaxMTUSize", "99999999999"}};
    for (const auto& c : kCannot)
    {
        Sql(std::string("INSERT OR REPLACE INTO lists VALUES('") + c.list + "', 1);" +
            "INSERT OR REPLACE INTO cells VALUES('" + c.list + "', 1, '', ''), ('" + c.list + "', 1, '" + c.field +
            "', '" + c.value + "')");
        const OutputCapture output;
        LoadState();
        EXPECT_NE(output.Text().find(std::string("cannot hold the text of ") + c.field), std::string::npos) << c.value;
        EXPECT_EQ(FindList(c.list)->rows.Rows().size(), 1u);
    }
    EXPECT_EQ(HttpPort(), "8080");
}

}  // namespace
}  // namespace kobd::test
