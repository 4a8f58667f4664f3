// Every table of the dictionary through the real daemon: dump and get agree, every column takes
// both ends of its type, rows come and go, the maximum holds.
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>

#include "dictionary/records.h"
#include "tests/items.h"
#include "tests/system/daemon_test.h"

namespace kobd::test
{
namespace
{
// Lists that know a new row only from its first set on.
const std::string_view kAddedBySet[] = {
    "CellularInterfaceTable",
    "CellularUSIMTable",
    "CellularStatsTable",
    "cellularaccesspointTable",
};

using Fields = std::vector<std::pair<std::string_view, std::string>>;

// For tables with a check: a row that it accepts, and the field that makes it refuse the row.
struct CheckedRow
{
    Fields good;
    Fields bad;
};
const std::map<std::string_view, CheckedRow> kCheckedRows = {
    {"IpMacBindTable",  // in the LAN pool, and the router itself
     {{{"IP", "192.168.1.150"}, {"MAC", "00:1A:2B:3C:4D:5E"}, {"Name", "printer"}}, {{"IP", "192.168.1.1"}}}},
    {"FwMacFilterTable", {{{"MAC_LIST", "WHITE"}, {"MAC", "00:1A:2B:3C:4D:5E"}}, {{"MAC", "FF:FF:FF:FF:FF:FF"}}}},
    {"FwUrlFilterTable", {{{"URL", "www.example.com"}}, {{"URL", "192.168.1.1"}}}},
    {"FwPortForwardTable",
     {{{"Protocol", "tcp"}, {"DestIPAddress", "192.0.2.7"}, {"DestPort", "80"}, {"MinPort", "81"}, {"SrcPort", "81"}},
      {{"SrcPort", "9-8"}}}},
    {"PortRedirectTable",
     {{{"Protocol", "udp"}, {"IP", "192.0.2.8"}, {"DestPort", "80"}, {"MinPort", "82"}, {"SrcPort", "82"}},
      {{"Protocol", "UDP"}}}},
    {"FwAccessRestrictionTable",
     {{{"Name", "evening"},
       {"Weekdays", "Mon,Tue"},
       {"TimeStart", "08:30"},
       {"TimeStop", "21:00"},
       {"Host", "10.1.1.9"}},
      {{"TimeStop", "06:00"}}}},
    {"FwPortTriggerTable",
     {{{"OutProtocol", "tcp"}, {"OutPort", "100-200"}, {"InProtocol", "udp"}, {"InPort", "300"}}, {{"InPort", "0"}}}},
    {"FwNewParentControlTable",
     {{{"Enable", "1"}, {"Name", "child"}, {"Host", "00:1A:2B:3C:4D:5E"}, {"Time", "160823"}}, {{"Time", "160824"}}}},
    {"SpeedDialTable",
     {{{"SpeedDialNumber", "99"}, {"ActureNumber", "*100#"}, {"Description", "mail"}}, {{"SpeedDialNumber", "00"}}}},
};

template <typename Names>
bool Has(const Names& names, std::string_view name)
{
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

enum class End
{
    kLow,
    kHigh,
};

// The value at one end of what a column can hold.
std::string ValueAt(const ColumnDef& column, End end)
{
    const bool low = end == End::kLow;
    switch (column.type)
    {
        case VT_INT32:
        case VT_BOOL:
        case VT_ENUM: return low ? "-2147483648" : "2147483647";
        case VT_INT16: return low ? "-32768" : "32767";
        case VT_INT8:
        case VT_UINT8: return low ? "0" : "255";
        case VT_UINT64: return low ? "0" : "18446744073709551615";
        case VT_UINT32: return low ? "0" : "4294967295";
        case VT_UINT16: return low ? "0" : "65535";
        case VT_IPV4:
        case VT_IPV4_2: return low ? "0.0.0.0" : "255.255.255.255";
        case VT_MAC: return low ? "00:00:00:00:00:00" : "FF:FF:FF:FF:FF:FF";
        default: return low ? "" : std::string(column.length - 1, 'Z');
    }
}

std::span<const ColumnDef> Columns(const TableDef& table) { return {table.columns, table.column_count}; }

Fields FieldsAt(const TableDef& table, End end)
{
    Fields fields;
    for (const ColumnDef& column : Columns(table)) fields.emplace_back(column.name, ValueAt(column, end));
    return fields;
}

std::string RowOf(const TableDef& table, int32_t index, const Fields& fields)
{
    std::string items = Row(table.name, index);
    for (const auto& [name, text] : fields) items += Column(name, text);
    return items;
}

int SetRows(uint16_t id, const std::string& changes)
{
    std::ofstream("/tmp/changes", std::ios::binary) << changes;
    return Request(id, {{kTagValue, "/tmp/changes"}}).result;
}

int Delete(const TableDef& table, int32_t index) { return RequestItems(kTableDel, Row(table.name, index)).result; }

// The index of a new row; a refusal's code as a negative number.
int32_t Add(const TableDef& table)
{
    const Answer answer = Request(kTableAdd, {{kTagTableName, table.name}});
    return answer.result == 0 && answer.texts.size() == 1 ? std::stoi(answer.texts[0]) : -answer.result;
}

// The rows of a table as a dump has them: items by index.
std::map<int32_t, std::string> Dump(const TableDef& table)
{
    std::map<int32_t, std::string> rows;
    const Answer answer = Request(kTableDump, {{kTagTableName, table.name}});
    EXPECT_EQ(answer.result, 0) << table.name;
    if (answer.texts.size() != 1) return rows;
    const std::string bytes = FileText(answer.texts[0]);
    unlink(answer.texts[0].c_str());
    std::string* row = nullptr;
    TlvReader reader(bytes);
    while (const auto item = reader.Next())
    {
        const std::string value(item->value.data(), item->value.size());
        if (item->tag == kTagTableName) continue;
        if (item->tag == kTagRowIndex)
            *(row = &rows[*item->Int()]) = Row(table.name, *item->Int());
        else if (row != nullptr)
            *row += RawItem(item->tag, value);
    }
    EXPECT_FALSE(reader.Broken()) << table.name;
    return rows;
}

Answer GetRow(const TableDef& table, int32_t index) { return RequestItems(kTableGet, Row(table.name, index)); }

void CheckRowHolds(const TableDef& table, int32_t index, const Fields& fields)
{
    const Answer answer = GetRow(table, index);
    ASSERT_EQ(answer.result, 0) << table.name;
    for (const auto& [name, text] : fields)
        EXPECT_NE(answer.items.find(Column(name, text)), std::string::npos) << table.name << " " << name << "=" << text;
}

// Sets in turn both ends of every column, or what the table's check accepts and refuses.
void CheckRowTakesItsValues(const TableDef& table, int32_t index)
{
    std::vector<Fields> accepted = {FieldsAt(table, End::kHigh), FieldsAt(table, End::kLow)};
    const auto checked = kCheckedRows.find(table.name);
    ASSERT_EQ(checked != kCheckedRows.end(), table.ops->validate != nullptr) << table.name;
    if (checked != kCheckedRows.end()) accepted = {checked->second.good};
    for (const Fields& fields : accepted)
    {
        ASSERT_EQ(SetRows(kTableSet, RowOf(table, index, fields)), 0) << table.name;
        CheckRowHolds(table, index, fields);
    }
    if (checked == kCheckedRows.end()) return;
    EXPECT_EQ(SetRows(kTableSet, RowOf(table, index, checked->second.bad)), 2) << table.name;
    CheckRowHolds(table, index, accepted[0]);
}

void CheckRowCanBeDeleted(const TableDef& table, int32_t index)
{
    EXPECT_EQ(Delete(table, index), 0) << table.name;
    EXPECT_EQ(GetRow(table, index).result, 13) << table.name;
    EXPECT_EQ(Delete(table, index), 13) << table.name;
}

using EveryTable = DaemonTest;
}  // namespace

TEST_F(EveryTable, CountsAndOperationsThatAreMissing)
{
    for (const TableDef& table : kTables)
    {
        const std::string name = TextItem(kTagTableName, table.name);
        EXPECT_EQ(RequestItems(kTableMaxRow, name).items, IntItem(kTagValue, static_cast<int32_t>(table.max_rows)));
        EXPECT_EQ(RequestItems(kTableElementCount, name).items,
                  IntItem(kTagValue, static_cast<int32_t>(table.column_count)));
        const TableOps& ops = *table.ops;
        EXPECT_TRUE(ops.add != nullptr || RequestItems(kTableAdd, name).result == 16) << table.name;
        EXPECT_TRUE(ops.del != nullptr || Delete(table, 1) == 16) << table.name;
        EXPECT_TRUE(ops.get != nullptr || GetRow(table, 1).result == 16) << table.name;
        EXPECT_TRUE(ops.set != nullptr || SetRows(kTableSet, Row(table.name, 1)) == 16) << table.name;
        EXPECT_TRUE((ops.add != nullptr && ops.setPPath != nullptr) ||
                    RequestItems(kSubTableAdd, name + TextItem(kTagParentPath, "Device.")).result == 16)
            << table.name;
    }
}

TEST_F(EveryTable, DumpAndGetAgree)
{
    for (const TableDef& table : kTables)
    {
        const auto rows = Dump(table);
        EXPECT_LE(rows.size(), table.max_rows) << table.name;
        for (const auto& [index, items] : rows)
            EXPECT_TRUE(table.ops->get == nullptr || GetRow(table, index).items == items) << table.name << " " << index;
    }
}

TEST_F(EveryTable, RowIsAddedSetReadAndDeleted)
{
    for (const TableDef& table : kTables)
    {
        if (table.ops->add == nullptr) continue;
        const auto rows = Dump(table);
        ASSERT_TRUE(rows.size() < table.max_rows || Delete(table, rows.rbegin()->first) == 0) << table.name;
        const int32_t index = Add(table);
        ASSERT_GE(index, 0) << table.name;
        if (table.ops->set == nullptr) continue;
        CheckRowTakesItsValues(table, index);
        if (table.ops->del != nullptr) CheckRowCanBeDeleted(table, index);
    }
}

TEST_F(EveryTable, SettableRowsOfFixedTablesTakeBothEnds)
{
    for (const TableDef& table : kTables)
    {
        if (table.ops->set == nullptr || table.ops->add != nullptr) continue;
        for (const auto& [index, items] : Dump(table))
        {
            CheckRowTakesItsValues(table, index);
            EXPECT_EQ(SetRows(kTableSet, items), 0) << "what a dump holds can be set: " << table.name;
        }
    }
}

TEST_F(EveryTable, HoldsItsMaximumAndNoMore)
{
    std::set<uint32_t> maxima;
    for (const TableDef& table : kTables)
    {
        if (table.ops->add == nullptr || Has(kAddedBySet, table.name)) continue;
        // Each of some 4000 rows is written to the state when it is added, too much for an emulator: there one
        // table for each maximum.
        if (!maxima.insert(table.max_rows).second && *KOBD_EMULATOR != 0) continue;
        size_t count = Dump(table).size();
        std::vector<int32_t> added;
        int32_t index = 0;
        for (; count <= table.max_rows && (index = Add(table)) >= 0; ++count) added.push_back(index);
        EXPECT_EQ(index, -15) << table.name;
        EXPECT_EQ(count, table.max_rows) << table.name;
        EXPECT_EQ(Dump(table).size(), table.max_rows) << table.name;
        if (table.ops->del == nullptr) continue;
        for (const int32_t row : added) EXPECT_EQ(Delete(table, row), 0) << table.name << " " << row;
    }
}
}  // namespace kobd::test
