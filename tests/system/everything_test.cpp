// Every object and every table of the dictionary through the real daemon: what can be read is read, what can be
// written takes a good value and refuses a bad one, and all of it survives a wipe by export and import.
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>

#include "client/dictionary/dictionary.h"
#include "dictionary/records.h"
#include "tests/items.h"
#include "tests/system/daemon_test.h"
#include "tests/system/kobctl_program.h"
#include "tests/system/object_samples.h"
#include "tests/uci_on_path.h"

namespace kobd::test
{
namespace
{
using client::ObjectEntry;

void CheckWritable(const ObjectEntry& object)
{
    const bool readable = object.access == Access::kReadWrite;
    const SampleValues values = SamplesFor(object);
    const std::string before = GetObject(object.name);
    if (!values.bad.empty() || values.of_check)
    {
        EXPECT_EQ(SetObject(object.name, values.bad, kReqObjSetSilent), 2) << object.name;
        EXPECT_EQ(GetObject(object.name), before) << object.name << " kept its value when refused";
    }
    EXPECT_TRUE(object.validator == nullptr || values.of_check)
        << "the check of " << object.name << " has no values here";
    EXPECT_EQ(SetObject(object.name, values.good, kReqObjSetSilent), 0) << object.name << "=" << values.good;
    // The two 5G locks are read through the LTE lock's accessor.
    if (readable && strcmp(object.name, "lteLockband5g") != 0)
    {
        EXPECT_EQ(GetObject(object.name), values.good) << object.name;
    }
}

using Fields = std::vector<std::pair<std::string, std::string>>;

// "COLUMN=VALUE COLUMN=VALUE"
Fields FieldsIn(const std::string& words)
{
    Fields fields;
    std::istringstream parts(words);
    for (std::string word; parts >> word;)
        fields.emplace_back(word.substr(0, word.find('=')), word.substr(word.find('=') + 1));
    return fields;
}

// For tables with a check: a row that it accepts, and the field that makes it refuse the row.
const std::map<std::string_view, std::pair<const char*, const char*>> kCheckedRows = {
    {"IpMacBindTable", {"IP=192.168.1.150 MAC=00:1A:2B:3C:4D:5E Name=printer", "IP=192.168.1.1"}},  // the router itself
    {"FwMacFilterTable", {"MAC_LIST=WHITE MAC=00:1A:2B:3C:4D:5E", "MAC=FF:FF:FF:FF:FF:FF"}},
    {"FwUrlFilterTable", {"URL=www.example.com", "URL=192.168.1.1"}},
    {"FwPortForwardTable", {"Protocol=tcp DestIPAddress=192.0.2.7 DestPort=80 MinPort=81 SrcPort=81", "SrcPort=9-8"}},
    {"PortRedirectTable", {"Protocol=udp IP=192.0.2.8 DestPort=80 MinPort=82 SrcPort=82", "Protocol=UDP"}},
    {"FwAccessRestrictionTable",
     {"Name=evening Weekdays=Mon,Tue TimeStart=08:30 TimeStop=21:00 Host=10.1.1.9", "TimeStop=06:00"}},
    {"FwPortTriggerTable", {"OutProtocol=tcp OutPort=100-200 InProtocol=udp InPort=300", "InPort=0"}},
    {"FwNewParentControlTable", {"Enable=1 Name=child Host=00:1A:2B:3C:4D:5E Time=160823", "Time=160824"}},
    {"SpeedDialTable", {"SpeedDialNumber=99 ActureNumber=*100# Description=mail", "SpeedDialNumber=00"}},
};

// A value of a column that has room for all that a file must write in its own way; tests/tables has the others.
std::string SampleOf(const ColumnDef& column)
{
    switch (column.type)
    {
        case VT_IPV4:
        case VT_IPV4_2: return "10.0.0.7";
        case VT_MAC: return "02:00:00:00:00:07";
        case VT_STRING: return (" =\\\n]" + std::string(column.length, 'Z')).substr(0, column.length - 1);
        default: return "7";
    }
}

int SetRow(const std::string& items)
{
    std::ofstream("/tmp/changes", std::ios::binary) << items;
    return Request(kReqTableSet, {{kTagValue, "/tmp/changes"}}).result;
}

int SetFields(const TableDef& table, int32_t index, const Fields& fields)
{
    std::string items = Row(table.name, index);
    for (const auto& [name, text] : fields) items += Column(name, text);
    return SetRow(items);
}

Answer GetRow(const TableDef& table, int32_t index) { return RequestItems(kReqTableGet, Row(table.name, index)); }

// The rows of a table as a dump has them: items by index.
std::map<int32_t, std::string> Dump(const TableDef& table)
{
    std::map<int32_t, std::string> rows;
    const Answer answer = Request(kReqTableDump, {{kTagTableName, table.name}});
    EXPECT_EQ(answer.result, 0) << table.name;
    if (answer.texts.size() != 1) return rows;
    const std::string bytes = FileText(answer.texts[0]);
    unlink(answer.texts[0].c_str());
    std::string* row = nullptr;
    TlvReader reader(bytes);
    while (const auto item = reader.Next())
    {
        if (item->tag == kTagRowIndex)
            *(row = &rows[*item->Int()]) = Row(table.name, *item->Int());
        else if (item->tag != kTagTableName && row != nullptr)
            *row += RawItem(item->tag, {item->value.data(), item->value.size()});
    }
    EXPECT_FALSE(reader.Broken());
    return rows;
}

void CheckRowTakesItsValues(const TableDef& table, int32_t index)
{
    Fields fields;
    for (uint32_t i = 0; i < table.column_count; ++i)
        if (strcmp(table.columns[i].name, "pIndex") != 0)  // the cellular lists do not keep that one
            fields.emplace_back(table.columns[i].name, SampleOf(table.columns[i]));
    const auto checked = kCheckedRows.find(table.name);
    ASSERT_EQ(checked != kCheckedRows.end(), table.ops->validate != nullptr);
    if (checked != kCheckedRows.end()) fields = FieldsIn(checked->second.first);
    ASSERT_EQ(SetFields(table, index, fields), 0);
    if (checked != kCheckedRows.end())
    {
        EXPECT_EQ(SetFields(table, index, FieldsIn(checked->second.second)), 2);
    }
    const Answer answer = GetRow(table, index);
    for (const auto& [name, text] : fields)
        EXPECT_NE(answer.items.find(Column(name, text)), std::string::npos) << name << "=" << text;
}

class Everything : public DaemonTest
{
protected:
    void SetUp() override
    {
        DaemonTest::SetUp();
        if (!Emulator().empty()) PutUciOnPath();  // elsewhere the daemon finds our uci by itself
    }
};
using EveryObject = Everything;
using EveryTable = Everything;
using KobctlExport = Everything;

TEST_F(EveryObject, IsReadAndWritableOnesTakeGoodAndRefuseBadValues)
{
    for (const ObjectEntry& object : kObjectRows)
    {
        const std::string value = GetObject(object.name);
        EXPECT_EQ(value == "nothing", object.access == Access::kWriteOnly) << object.name;
        EXPECT_TRUE(object.access != Access::kAction || value == "0") << object.name;
        const ObjectEntry* named = client::FindObject(object.name);
        if (object.access == Access::kReadOnly)
        {
            const int refusal = named->access == Access::kReadOnly ? 10 : 0;
            EXPECT_EQ(SetObject(object.name, "1", kReqObjSetSilent), refusal) << object.name;
        }
        else if (named == &object)
            CheckWritable(object);
    }
}

TEST_F(EveryTable, DumpAndGetAgreeAndWhatADumpHoldsCanBeSet)
{
    for (const TableDef& table : kTables)
    {
        SCOPED_TRACE(table.name);
        for (const auto& [index, items] : Dump(table))
        {
            EXPECT_TRUE(table.ops->get == nullptr || GetRow(table, index).items == items) << index;
            if (table.ops->set == nullptr || table.ops->add != nullptr) continue;
            CheckRowTakesItsValues(table, index);
            EXPECT_EQ(SetRow(items), 0) << index;
        }
    }
}

std::string Export()
{
    const Ran ran = RunLine("export");
    EXPECT_EQ(ran.status, 0) << ran.errors;
    return ran.output;
}

// Gives everything that an import can set a value other than the factory's.
void ChangeEverything()
{
    for (const ObjectEntry& object : kObjectRows)
    {
        // Unchecked names of values that have a check, which would refuse the samples.
        const bool unchecked = strcmp(object.name, "LANStartIP") == 0 || strcmp(object.name, "LANEndIP") == 0;
        if (object.access != Access::kReadWrite || object.shared || unchecked) continue;
        if (client::FindObject(object.name) != &object) continue;
        EXPECT_EQ(SetObject(object.name, SamplesFor(object).good, kReqObjSetSilent), 0) << object.name;
    }
    for (const TableDef& table : kTables)
    {
        SCOPED_TRACE(table.name);
        const bool once =
            client::FindTable(table.name)->list_of == std::string_view(table.name);  // of its list's tables
        if (table.ops->add == nullptr || table.ops->del == nullptr || table.ops->set == nullptr || !once) continue;
        const auto rows = Dump(table);
        if (rows.size() == table.max_rows)
        {
            EXPECT_EQ(RequestItems(kReqTableDel, Row(table.name, rows.rbegin()->first)).result, 0);
        }
        const Answer added = Request(kReqTableAdd, {{kTagTableName, table.name}});
        ASSERT_EQ(added.texts.size(), 1u) << added.result;
        CheckRowTakesItsValues(table, std::stoi(added.texts[0]));
    }
}

TEST_F(KobctlExport, AWipedRouterIsAsBefore)
{
    const std::string factory = Export();
    ChangeEverything();
    const std::string changed = Export();
    EXPECT_NE(changed, factory);
    Clear();
    SetUp();
    EXPECT_EQ(Export(), factory);
    std::ofstream("/tmp/changed.conf") << changed;
    const Ran ran = RunLine("import /tmp/changed.conf");
    EXPECT_EQ(ran.status, 0) << ran.errors;
    EXPECT_EQ(Export(), changed);
    EXPECT_EQ(Said("import /tmp/changed.conf"), "0 values and the rows of 0 tables set, 0 lines refused\n");
    Restart();
    EXPECT_EQ(Export(), changed) << "durable";

    std::ofstream("/tmp/factory.conf") << factory;
    const std::string refused = RunLine("import /tmp/factory.conf").errors;
    const std::string now = Export();
    std::istringstream lines(factory);
    for (std::string line; std::getline(lines, line);)
        if (!line.starts_with("# ") && refused.find(": " + line.substr(0, line.find('=') + 1)) == std::string::npos)
        {
            EXPECT_NE(now.find(line + "\n"), std::string::npos) << line << " is neither back nor refused\n" << refused;
        }
}
}  // namespace
}  // namespace kobd::test
