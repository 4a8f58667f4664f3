// The four families of cellular lists. They differ in their words, row size and fields, and in the
// configuration that holds the index. Everything else about them is the same.
//
// A row, unaligned bytes:
//
//    0        4         8                       row size - 256     row size
//    +--------+---------+--- ... ---------------+------------------+
//    | index  | pIndex  | texts, 256 bytes each | section name     |
//    +--------+---------+--- ... ---------------+------------------+
#pragma once

#include <cstdint>
#include <span>

namespace kobd
{
inline constexpr uint32_t kCellularText = 256;  // bytes of a text field or section name with its zero byte

struct CellularField
{
    const char* name;  // of the option, which is the column's
    uint32_t offset;   // bytes from the start of the row
};

struct CellularFamily
{
    const char* word;       // section type, and value of the option "name"
    const char* load_name;  // names of the two functions in log lines
    const char* save_name;
    uint32_t row_size;  // bytes
    // The configuration to which a save writes the index. A load reads the index from tr069_interface, so
    // that it numbers the interface family anew, in the order of the listing.
    const char* index_config;
    std::span<const CellularField> fields;  // in the order in which they are loaded and saved
};

inline constexpr const char* kEntryConfig = "tr069_interface";  // sections and indexes
inline constexpr const char* kValueConfig = "tr069_cellular";   // field values, under the same section names

inline constexpr CellularField kInterfaceFields[] = {
    {"Enable", 264},
    {"Status", 2312},
    {"Alias", 2568},
    {"Name", 2824},
    {"LastChange", 776},
    {"LowerLayers", 3080},
    {"Upstream", 520},
    {"IMEI", 3336},
    {"SupportedAccessTechnologies", 3592},
    {"PreferredAccessTechnology", 3848},
    {"CurrentAccessTechnology", 4104},
    {"AvailableNetworks", 4360},
    {"NetworkRequested", 4616},
    {"NetworkInUse", 4872},
    {"RSSI", 1032},
    {"UpstreamMaxBitRate", 1288},
    {"DownstreamMaxBitRate", 1544},
    {"X_QUELMOR_Network_Status.Cell_ID", 1800},
    {"X_QUELMOR_Network_Status.LAC", 2056},
    {"X_QUELMOR_Network_Cellular.Modulo.Model", 5128},
    {"X_QUELMOR_Network_Cellular.Modulo.Manufacturer", 5384},
    {"X_QUELMOR_Network_Cellular.Modulo.HardwareVersion", 5640},
    {"X_QUELMOR_Network_Cellular.Modulo.SoftwareVersion", 5896},
};

inline constexpr CellularField kUsimFields[] = {
    {"Status", 8}, {"IMSI", 264}, {"ICCID", 520}, {"MSISDN", 776}, {"PINCheck", 1032}, {"PIN", 1288},
};

inline constexpr CellularField kStatsFields[] = {
    {"BytesSent", 8},
    {"BytesReceived", 264},
    {"PacketsSent", 520},
    {"PacketsReceived", 776},
    {"ErrorsSent", 1032},
    {"ErrorsReceived", 1288},
    {"UnicastPacketsSent", 1544},
    {"UnicastPacketsReceived", 1800},
    {"DiscardPacketsSent", 2056},
    {"DiscardPacketsReceived", 2312},
    {"MulticastPacketsSent", 2568},
    {"MulticastPacketsReceived", 2824},
    {"BroadcastPacketsSent", 3080},
    {"BroadcastPacketsReceived", 3336},
    {"UnknownProtoPacketsReceived", 3592},
};

inline constexpr CellularField kAccesspointFields[] = {
    {"Enable", 8},      {"Alias", 264},  {"APN", 520},        {"Username", 776},
    {"Password", 1032}, {"Proxy", 1288}, {"ProxyPort", 1544}, {"Interface", 1800},
};

inline constexpr CellularFamily kInterfaceFamily = {
    "cellularinterface", "cellularinterfaceListInit", "cellularinterfaceListSave", 6408, kValueConfig, kInterfaceFields,
};
inline constexpr CellularFamily kUsimFamily = {
    "cellularusim", "cellularusimListInit", "cellularusimListSave", 1800, kEntryConfig, kUsimFields,
};
inline constexpr CellularFamily kStatsFamily = {
    "cellularstats", "cellularstatsListInit", "cellularstatsListSave", 4104, kEntryConfig, kStatsFields,
};
inline constexpr CellularFamily kAccesspointFamily = {
    "cellularaccesspoint", "cellularaccesspointListInit", "cellularaccesspointListSave", 2312, kEntryConfig,
    kAccesspointFields,
};

// Bytes from the start of the row to its section name.
constexpr uint32_t SectionNameOffset(const CellularFamily& family) { return family.row_size - kCellularText; }
}  // namespace kobd
