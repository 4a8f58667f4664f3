// The database of the state folder: what was committed comes back byte for byte, and nothing else is written.
#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "tests/host/host_state.h"

namespace kobd::test
{
namespace
{
using StateTest = HostState;

TEST_F(StateTest, AnyBytesOfEveryKeptTableComeBack)
{
    std::mt19937 random(7);
    for (List& list : AllLists())
        for (int kind = 0; list.kept && kind < 3; ++kind)
        {
            const auto number = static_cast<size_t>(&list - AllLists().data());
            int32_t index = 0;
            if (ListAdd(number, &index) != 0) index = IndexOf(list.rows.Rows().back());
            // All bytes, some bytes among zeros, and texts that fill their field to the last byte.
            Block row(list.rows.RowSize());
            for (char& byte : row)
                byte = kind == 0 || (kind == 1 && random() % 50 == 0) ? static_cast<char>(random())
                       : kind == 2                                    ? "a\n\\=#[] \r"[random() % 9]
                                                                      : '\0';
            ASSERT_EQ(ListSet(number, index, row.data()), 0) << list.table;
        }
    auto before = EverySingleRow();
    const std::string text = "\xE4\xB8\xAD\xFF\x01\n\\ end='\"; DROP TABLE objects; --";
    devHostNameSet(text.c_str());
    CommitAndLoad();
    EXPECT_EQ(Object("devHostName"), text);
    for (const auto& [table, rows] : EverySingleRow()) EXPECT_EQ(rows, before[table]) << table;
}

TEST_F(StateTest, EndOfALongerTextDoesNotStayBehindAShorterOne)
{
    Block row = GetRow("usersTable", 1);
    char* password = row.data() + Column("usersTable", "Password").offset;
    for (const char* text : {"secret-of-old", "new"})
    {
        strcpy(password, text);
        ASSERT_EQ(Table("usersTable").ops->set(1, row.data()), 0);
    }
    const Block kept = GetRow("usersTable", 1);
    const char* now = kept.data() + Column("usersTable", "Password").offset;
    EXPECT_EQ(std::string(now, 256), "new" + std::string(253, '\0'));
    ASSERT_EQ(update_config(), 0);
    EXPECT_EQ(Sql("SELECT length(CAST(value AS BLOB)) FROM cells WHERE list='usersTable' AND number=1"
                  " AND field IN ('', 'Password')"),
              "0\n3\n");
}

TEST_F(StateTest, CommittedIsKeptAndUncommittedIsLost)
{
    AddUrl("a.example.net");
    AddUrl("b.example.net");
    ASSERT_EQ(Table("FwUrlFilterTable").ops->setPPath(2, "Device.Parental."), 0);
    ASSERT_EQ(update_config(), 0);
    AddUrl("c.example.net");
    ASSERT_EQ(DeleteUrl(1), 0);
    LoadState();
    EXPECT_EQ(Urls(), (Texts{"a.example.net", "b.example.net"}));
    EXPECT_EQ(FindList("FwUrlFilterTable")->rows.Find(2)->parent_path, "Device.Parental.");
    ASSERT_EQ(DeleteUrl(2), 0);
    CommitAndLoad();
    EXPECT_EQ(AddUrl("d.example.net"), 3) << "no index comes back over a restart either";

    for (const int32_t index : {1, 3}) ASSERT_EQ(DeleteUrl(index), 0);
    ASSERT_EQ(Table("DhcpStaticAddressTable").ops->del(1), 0);
    ASSERT_EQ(SetFields("ApnConfigTable", 0, {{"ApnName", "internet-one"}}), 0) << "counts from 0";
    Texts apns = Fields("ApnConfigTable", "ApnName");
    CommitAndLoad();
    EXPECT_EQ(Urls(), Texts()) << "an emptied list stays empty";
    EXPECT_TRUE(Rows("DhcpStaticAddressTable").empty()) << "of the factory's rows, too";
    EXPECT_EQ(Fields("ApnConfigTable", "ApnName"), apns) << "the other rows are still the factory's";
    EXPECT_EQ(apns[0], "internet-one");
}

TEST_F(StateTest, OnlyWhatChangedIsWritten)
{
    ASSERT_EQ(SetFields("usersTable", 1, {}), 0);
    ASSERT_EQ(update_config(), 0);
    EXPECT_EQ(Sql("SELECT count(*) FROM history"), "0\n") << "set to what it was";
    webHttpPortSet("8080");
    AddUrl("a.example.net");
    AddUrl("b.example.net");
    ASSERT_EQ(update_config(), 0);
    webHttpPortSet("80");
    ASSERT_EQ(DeleteUrl(1), 0);
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

    Sql("WITH RECURSIVE n(i) AS (SELECT 10 UNION ALL SELECT i + 1 FROM n WHERE i < 9970)"
        " INSERT INTO history(id, batch) SELECT i, i FROM n");
    std::vector<std::string> counts;
    for (int port = 8001; port <= 8090; ++port)
    {
        webHttpPortSet(std::to_string(port).c_str());
        ASSERT_EQ(update_config(), 0);
        counts.push_back(Sql("SELECT count(*) FROM history"));
    }
    EXPECT_EQ(*std::ranges::max_element(counts, {}, [](const auto& text) { return std::stoi(text); }), "9999\n");
    EXPECT_GT(std::stoi(counts.back()), 9900);
    EXPECT_EQ(Sql("SELECT max(batch) FROM history"), "10060\n");
}

TEST_F(StateTest, WhatThisBuildDoesNotKnowOrHoldStaysInTheDatabase)
{
    const struct
    {
        const char* list;
        const char* number;
        const char* field;
        const char* value;
        const char* said;
    } kCells[] = {
        {"NewTable", "9", "X", "1", "no rows are kept for NewTable"},
        {"SmsTable", "9", "Tag", "1", "no rows are kept for SmsTable"},
        {"FwUrlFilterTable", "1", "Colour", "red", "FwUrlFilterTable row 1: there is no column Colour"},
        {"FwUrlFilterTable", "-2", "URL", "a", "FwUrlFilterTable: row -2 cannot be"},
        {"FwUrlFilterTable", "99999999999", "URL", "a", "FwUrlFilterTable: row 99999999999 cannot be"},
        {"IpMacBindTable", "1", "MAC", "00:00:5E:00:53", "cannot hold the text of MAC"},
        {"IpMacBindTable", "2", "IP", "192.0.2.256", "cannot hold the text of IP"},
        {"usersTable", "1", "Enable", "yes", "cannot hold the text of Enable"},
        {"node_595Table", "1", "MaxMTUSize", "-1", "cannot hold the text of MaxMTUSize"},
        {"NatPortMappingTable", "1", "InternalPort", "99999999999", "cannot hold the text of InternalPort"},
    };
    for (const auto& c : kCells)
        Sql("INSERT OR REPLACE INTO lists VALUES('" + std::string(c.list) + "', 9); INSERT INTO cells VALUES('" +
            c.list + "', " + c.number + ", '', ''), ('" + c.list + "', " + c.number + ", '" + c.field + "', '" +
            c.value + "')");
    Sql("INSERT INTO objects VALUES('newObject', '1')");
    Sql("INSERT INTO cells VALUES('FwUrlFilterTable', 5, 'URL', 'of no row'), ('FwUrlFilterTablf', 1, 'URL', 'of no "
        "list')");
    {
        const OutputCapture output;
        LoadState();
        for (const auto& c : kCells) EXPECT_NE(output.Text().find(c.said), std::string::npos) << c.said;
        EXPECT_NE(output.Text().find("objects are not known here, newObject for one"), std::string::npos);
    }
    EXPECT_EQ(Rows("SmsTable").size(), 4u) << "rows that nobody can set are the factory's";
    EXPECT_EQ(Urls(), Texts{""});
    EXPECT_EQ(Rows("IpMacBindTable").size(), 2u) << "with what could be read";
    ASSERT_EQ(SetFields("FwUrlFilterTable", 1, {{"URL", "b"}}), 0);
    ASSERT_EQ(update_config(), 0);
    EXPECT_EQ(Sql("SELECT count(*) FROM objects WHERE name = 'newObject'"), "1\n");
    for (const auto& c : kCells)
        EXPECT_EQ(Sql("SELECT value FROM cells WHERE list = '" + std::string(c.list) + "' AND number = " + c.number +
                      " AND field = '" + c.field + "'"),
                  c.value + std::string("\n"))
            << c.said;
}
}  // namespace
}  // namespace kobd::test
