// The rows of a router that has just started: they fit their tables, and tell the same story as the
// objects.
#include <gtest/gtest.h>
#include <unistd.h>

#include <numeric>

#include "dictionary/catalogue/accessors.h"
#include "dictionary/row_field.h"
#include "host/tables/row_cells.h"
#include "tests/host/host_state.h"
#include "tests/process_setup.h"

namespace kobd::test
{
using namespace host;

namespace
{
using FactoryRows = HostState;

std::string Field(const List& list, const Row& row, std::string_view column)
{
    return ColumnText(list.layout->columns, row.block.data(), column);
}

// The column's texts of all rows of the table.
std::vector<std::string> Fields(std::string_view table, std::string_view column)
{
    std::vector<std::string> fields;
    const List& list = *FindList(table);
    for (const Row& row : list.rows.Rows()) fields.push_back(Field(list, row, column));
    return fields;
}

std::string Joined(const std::vector<std::string>& texts)
{
    std::string joined;
    for (const std::string& text : texts) joined += (joined.empty() ? "" : ",") + text;
    return joined;
}

uint64_t Sum(const std::vector<std::string>& numbers)
{
    return std::accumulate(numbers.begin(), numbers.end(), uint64_t{0},
                           [](uint64_t sum, const std::string& number) { return sum + std::stoull(number); });
}

// What the object of this name shows.
std::string Object(std::string_view name)
{
    for (const ObjDef& object : kObjects)
    {
        if (object.name != name) continue;
        char value[kValueBuffer] = "";
        EXPECT_EQ(object.get(value), 0) << name;
        return value;
    }
    ADD_FAILURE() << "no object " << name;
    return {};
}
}  // namespace

TEST_F(FactoryRows, FitTheirTables)
{
    const OutputCapture output;
    LoadState();
    EXPECT_EQ(output.Text(), "") << "every line was held by its column";
    for (const List& list : AllLists()) EXPECT_LE(list.rows.Rows().size(), Table(list.table).max_rows) << list.table;
}

TEST_F(FactoryRows, ObjectsAndRowsAgree)
{
    const struct
    {
        const char* object;
        const char* table;
        size_t row;
        const char* column;
    } kSame[] = {
        {"SIMWANIPv4", "ApnStatusTable", 0, "IpAddress"},
        {"TrRmnetSubnetMask", "ApnStatusTable", 0, "SubnetMask"},
        {"apnCurrentAPN", "ApnConfigTable", 0, "ApnName"},
        {"apnImsAPN", "ApnConfigTable", 1, "ApnName"},
        {"networkLanSettingIp", "node_596Table", 0, "IPAddress"},
        {"networkLanSettingMask", "node_596Table", 0, "SubnetMask"},
        {"networkLanSettingStart", "node_630Table", 0, "MinAddress"},
        {"networkLanSettingEnd", "node_630Table", 0, "MaxAddress"},
        {"TrLANLease", "node_630Table", 0, "LeaseTime"},
        {"networkLanSettingsMac", "node_588Table", 0, "MACAddress"},
        {"WANMAC", "node_588Table", 4, "MACAddress"},
        {"wifiSsid", "WiFiSsidTable", 0, "Ssid"},
        {"wifiKey0", "WiFiSsidTable", 0, "Key"},
        {"wifiWpaEncryption", "WiFiSsidTable", 0, "Encryption"},
        {"wifiMac", "WiFiSsidTable", 0, "SsidMac"},
        {"WLAN5GMAC", "WiFi5GSsidTable", 0, "SsidMac"},
        {"wifiCurrentChannel", "WiFiRadioTable", 0, "Channel"},
        {"wifi5gCurrentChannel", "WiFiRadioTable", 1, "Channel"},
        {"wifiEasymeshLocation", "EasymeshAPListTable", 0, "Location"},
        {"wifiStaCount", "WiFiSsidTR069Table", 0, "AssociatedDeviceNumberOfEntries"},
        {"wifi5gStaCount", "WiFiSsidTR069Table", 4, "AssociatedDeviceNumberOfEntries"},
        {"IMEI", "node_557Table", 0, "IMEI"},
        {"IMSI", "node_558Table", 0, "IMSI"},
        {"lteIccidGet", "node_558Table", 0, "ICCID"},
        {"PhoneNumber", "node_558Table", 0, "MSISDN"},
        {"Cellular_BytesSent", "MobileTable", 0, "SendBytes"},
        {"Cellular_BytesReceived", "node_597Table", 1, "BytesReceived"},
        {"lteEnbidGet", "SccCellTable", 0, "SccEnbID"},
        {"lteTacGet", "SccCellTable", 0, "SccTac"},
        {"node_595_1Status", "node_595Table", 0, "Status"},
        {"node_595_3Status", "node_595Table", 2, "Status"},
        {"webAdminUsername", "usersTable", 0, "Username"},
        {"webUserUsername", "usersTable", 1, "Username"},
    };
    for (const auto& same : kSame)
    {
        const auto fields = Fields(same.table, same.column);
        ASSERT_LT(same.row, fields.size()) << same.table;
        EXPECT_EQ(fields[same.row], Object(same.object)) << same.object << " and " << same.table << " " << same.column;
    }
    const auto earfcn = Fields("NeighborCellTable", "NeighborCellEarfcn");
    EXPECT_EQ(Joined(earfcn), Object("LTE_NeighbourCellEARFCN") + "," + Object("NR5G_NeighbourCellEARFCN"));
    EXPECT_EQ(Joined(Fields("NeighborCellTable", "NeighborCellPci")),
              Object("LTE_NeighbourCellPCI") + "," + Object("NR5G_NeighbourCellPCI"));
    EXPECT_EQ(Sum(Fields("SmsTable", "Tag")), std::stoull(Object("lteSmsUnreadNum")));
    uint64_t enabled = 0;
    char apn[kRowMax];
    for (int32_t index = 0; Table("ApnConfigTable").ops->get(index, apn) == 0; ++index)
        enabled += apn[FindColumn(*FindList("ApnConfigTable")->layout, "ApnEnable")->offset] == '1';
    EXPECT_EQ(enabled, std::stoull(Object("lteBearsCountGet")));
}

TEST_F(FactoryRows, DevicesAndTrafficAgreeWithEachOther)
{
    std::map<std::string, std::vector<std::vector<char>>> by_type;
    for (const Row& row : FindList("OnlineDeviceTable")->rows.Rows())
        by_type[Field(*FindList("OnlineDeviceTable"), row, "Type")].emplace_back(row.block.begin() + kRowIndexBytes,
                                                                                 row.block.end());
    const struct
    {
        const char* type;
        const char* table;
        size_t flow;  // row of FlowTable
    } kKinds[] = {{"Ethernet", nullptr, 0}, {"2.4G", "OnlineDeviceTable_24G", 2}, {"5G", "OnlineDeviceTable_5G", 3}};
    for (const auto& kind : kKinds)
    {
        uint64_t sent = 0;
        for (const Row& row : FindList("OnlineDeviceTable")->rows.Rows())
            if (Field(*FindList("OnlineDeviceTable"), row, "Type") == kind.type)
                sent += std::stoull(Field(*FindList("OnlineDeviceTable"), row, "TxBytes"));
        EXPECT_EQ(sent, std::stoull(Fields("FlowTable", "RecvBytes")[kind.flow])) << kind.type;
        if (kind.table == nullptr) continue;
        std::vector<std::vector<char>> rows;
        for (const Row& row : FindList(kind.table)->rows.Rows())
            rows.emplace_back(row.block.begin() + kRowIndexBytes, row.block.end());
        EXPECT_EQ(rows, by_type[kind.type]) << kind.table;
    }
    EXPECT_EQ(Sum(Fields("EthernetStats", "BytesSent")), std::stoull(Fields("FlowTable", "SendBytes")[0]));
    EXPECT_EQ(Fields("hostsTable", "IPAddress"), Fields("IPV4Table", "IPAddress"));
    EXPECT_EQ(Fields("hostsTable", "IPAddress"), Fields("OnlineDeviceTable", "IP"));
    EXPECT_EQ(Fields("hostsTable", "PhysAddress"), Fields("OnlineDeviceTable", "MAC"));
    EXPECT_EQ(Fields("node_633Table", "IPAddress"), Fields("OnlineDeviceTable", "IP"));
}

TEST_F(FactoryRows, ObjectsThatTellOfAListFollowIt)
{
    EXPECT_EQ(Object("OnlineTableNumberOfEntries"), "7");
    EXPECT_EQ(Object("OnlineTable24GNumberOfEntries"), "2");
    EXPECT_EQ(Object("OnlineTable24GGUESTNumberOfEntries"), "0");
    EXPECT_EQ(Object("lteSmsCurNum"), "4");
    EXPECT_EQ(Object("PortFilterNumberOfEntries"), "0");
    EXPECT_EQ(Object("PortFilterIndexList"), "");
    const TableOps& ops = *Table("FwPortFilterTable").ops;
    int32_t index = 0;
    for (int i = 0; i < 3; ++i) ASSERT_EQ(ops.add(&index), 0);
    ASSERT_EQ(ops.del(2), 0);
    EXPECT_EQ(Object("PortFilterNumberOfEntries"), "2");
    EXPECT_EQ(Object("PortFilterIndexList"), "1,3");
}

TEST_F(FactoryRows, TextsOutsideTheRowAreRead)
{
    const auto texts = Fields("SmsTable", "Content");
    ASSERT_EQ(texts.size(), 4u);
    EXPECT_NE(texts[1].find("\xC3\xA9"), std::string::npos) << texts[1];
    EXPECT_NE(texts[2].find('\n'), std::string::npos) << texts[2];
    LoadState();
    EXPECT_EQ(Fields("SmsTable", "Content"), texts) << "and again after loading once more";
}
}  // namespace kobd::test
