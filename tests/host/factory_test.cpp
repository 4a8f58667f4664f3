// The rows and values of a router that has just started: they fit their tables and checks, and tell one story.
#include <algorithm>
#include <numeric>

#include "dictionary/name_index.h"
#include "dictionary/value_check.h"
#include "host/objects/sources.h"
#include "tests/host/host_state.h"

namespace kobd::test
{
namespace
{
using Factory = HostState;

uint64_t Sum(const Texts& numbers)
{
    return std::accumulate(numbers.begin(), numbers.end(), uint64_t{0},
                           [](uint64_t sum, const std::string& number) { return sum + std::stoull(number); });
}

// The rows without their indexes.
std::vector<Block> Contents(std::vector<Block> rows)
{
    for (Block& row : rows) row.erase(row.begin(), row.begin() + kRowIndexBytes);
    return rows;
}
}  // namespace

TEST_F(Factory, RowsFitTheirTablesAndAnObjectTakesBackWhatItShows)
{
    const OutputCapture output;
    LoadState();
    EXPECT_EQ(output.Text(), "") << "every line was held by its column";
    for (const List& list : AllLists()) EXPECT_LE(list.rows.Rows().size(), Table(list.table).max_rows) << list.table;
    NameIndexBuild();
    for (const ObjDef& object : kObjects)
    {
        if (object.get == nullptr || object.set == nullptr) continue;
        const std::string value = Object(object.name);
        // An empty text is a setting that nobody has made yet; an action shows 0.
        if (value.empty() || object.get == NameLookup("systemReboot").object->get) continue;
        EXPECT_EQ(ParameterCheck(value.c_str(), &object.check), 0) << object.name << "=" << value;
    }
}

TEST_F(Factory, ObjectsAndRowsAgree)
{
    const struct
    {
        const char* table;
        size_t row;
        std::map<std::string, const char*> objects;  // and the columns that show the same
    } kSame[] = {
        {"ApnConfigTable", 0, {{"apnCurrentAPN", "ApnName"}}},
        {"ApnConfigTable", 1, {{"apnImsAPN", "ApnName"}}},
        {"ApnStatusTable", 0, {{"SIMWANIPv4", "IpAddress"}, {"TrRmnetSubnetMask", "SubnetMask"}}},
        {"EasymeshAPListTable", 0, {{"wifiEasymeshLocation", "Location"}}},
        {"MobileTable", 0, {{"Cellular_BytesSent", "SendBytes"}}},
        {"SccCellTable", 0, {{"lteEnbidGet", "SccEnbID"}, {"lteTacGet", "SccTac"}}},
        {"WiFi5GSsidTable", 0, {{"WLAN5GMAC", "SsidMac"}}},
        {"WiFiRadioTable", 0, {{"wifiCurrentChannel", "Channel"}}},
        {"WiFiRadioTable", 1, {{"wifi5gCurrentChannel", "Channel"}}},
        {"WiFiSsidTR069Table", 0, {{"wifiStaCount", "AssociatedDeviceNumberOfEntries"}}},
        {"WiFiSsidTR069Table", 4, {{"wifi5gStaCount", "AssociatedDeviceNumberOfEntries"}}},
        {"WiFiSsidTable", 0, {{"wifiSsid", "Ssid"}, {"wifiKey0", "Key"}, {"wifiMac", "SsidMac"}}},
        {"WiFiSsidTable", 0, {{"wifiWpaEncryption", "Encryption"}}},
        {"node_557Table", 0, {{"IMEI", "IMEI"}}},
        {"node_558Table", 0, {{"IMSI", "IMSI"}, {"lteIccidGet", "ICCID"}, {"PhoneNumber", "MSISDN"}}},
        {"node_588Table", 0, {{"networkLanSettingsMac", "MACAddress"}}},
        {"node_588Table", 4, {{"WANMAC", "MACAddress"}}},
        {"node_595Table", 0, {{"node_595_1Status", "Status"}}},
        {"node_595Table", 2, {{"node_595_3Status", "Status"}}},
        {"node_596Table", 0, {{"networkLanSettingIp", "IPAddress"}, {"networkLanSettingMask", "SubnetMask"}}},
        {"node_597Table", 1, {{"Cellular_BytesReceived", "BytesReceived"}}},
        {"node_630Table", 0, {{"networkLanSettingStart", "MinAddress"}, {"networkLanSettingEnd", "MaxAddress"}}},
        {"node_630Table", 0, {{"TrLANLease", "LeaseTime"}}},
        {"usersTable", 0, {{"webAdminUsername", "Username"}}},
        {"usersTable", 1, {{"webUserUsername", "Username"}}},
    };
    for (const auto& same : kSame)
        for (const auto& [object, column] : same.objects)
            EXPECT_EQ(Fields(same.table, column).at(same.row), Object(object)) << object;
    for (const std::string what : {"Earfcn", "Pci"})
    {
        const std::string name = "_NeighbourCell" + (what == "Pci" ? "PCI" : std::string("EARFCN"));
        std::string joined;
        for (const std::string& text : Fields("NeighborCellTable", "NeighborCell" + what)) joined += text + ",";
        EXPECT_EQ(joined, Object("LTE" + name) + "," + Object("NR5G" + name) + ",");
    }
    EXPECT_EQ(Sum(Fields("SmsTable", "Tag")), std::stoull(Object("lteSmsUnreadNum")));
    EXPECT_EQ(Sum(Fields("ApnConfigTable", "ApnEnable")), std::stoull(Object("lteBearsCountGet")));
}

TEST_F(Factory, DevicesAndTrafficAgreeWithEachOther)
{
    const struct
    {
        const char* type;
        const char* table;
        size_t flow;  // row of FlowTable
    } kKinds[] = {{"Ethernet", nullptr, 0}, {"2.4G", "OnlineDeviceTable_24G", 2}, {"5G", "OnlineDeviceTable_5G", 3}};
    for (const auto& kind : kKinds)
    {
        std::vector<Block> devices = Rows("OnlineDeviceTable");
        std::erase_if(devices, [&](const Block& row) { return Field("OnlineDeviceTable", row, "Type") != kind.type; });
        uint64_t sent = 0;
        for (const Block& row : devices) sent += std::stoull(Field("OnlineDeviceTable", row, "TxBytes"));
        EXPECT_EQ(std::to_string(sent), Fields("FlowTable", "RecvBytes").at(kind.flow)) << kind.type;
        EXPECT_TRUE(kind.table == nullptr || Contents(Rows(kind.table)) == Contents(devices)) << kind.type;
    }
    EXPECT_EQ(Sum(Fields("EthernetStats", "BytesSent")), std::stoull(Fields("FlowTable", "SendBytes")[0]));
    for (const char* table : {"hostsTable", "IPV4Table", "node_633Table"})
        EXPECT_EQ(Fields(table, "IPAddress"), Fields("OnlineDeviceTable", "IP")) << table;
    EXPECT_EQ(Fields("hostsTable", "PhysAddress"), Fields("OnlineDeviceTable", "MAC"));
}

TEST_F(Factory, ObjectsThatTellOfAListFollowIt)
{
    for (const Source& source : Sources())
        EXPECT_TRUE((source.kind != SourceKind::RowCount && source.kind != SourceKind::RowIndexes) ||
                    FindList(source.text) != nullptr)
            << source.object << ": " << source.text;
    for (const auto& [object, rows] : {std::pair("OnlineTableNumberOfEntries", "7"),
                                       {"OnlineTable24GNumberOfEntries", "2"},
                                       {"OnlineTable24GGUESTNumberOfEntries", "0"},
                                       {"lteSmsCurNum", "4"}})
        EXPECT_EQ(Object(object), rows) << object;
    const TableOps& filters = *Table("FwPortFilterTable").ops;
    int32_t index = 0;
    for (int i = 0; i < 3; ++i) ASSERT_EQ(filters.add(&index), 0);
    ASSERT_EQ(filters.del(2), 0);
    EXPECT_EQ(Object("PortFilterNumberOfEntries"), "2");
    EXPECT_EQ(Object("PortFilterIndexList"), "1,3");
}
}  // namespace kobd::test
