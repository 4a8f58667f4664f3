// The cellular lists of the management agent, which the daemon keeps itself.
#pragma once

#include "dictionary/row_layout.h"

// clang-format off
namespace kobd
{
// CellularInterfaceTable
inline constexpr ColumnDef kCellularInterfaceColumns[] = {
    {"pIndex",                                               4, VT_UINT32, 4},
    {"Enable",                                             264, VT_STRING, 256},
    {"Status",                                            2312, VT_STRING, 256},
    {"Alias",                                             2568, VT_STRING, 256},
    {"Name",                                              2824, VT_STRING, 256},
    {"LastChange",                                         776, VT_STRING, 256},
    {"LowerLayers",                                       3080, VT_STRING, 256},
    {"Upstream",                                           520, VT_STRING, 256},
    {"IMEI",                                              3336, VT_STRING, 256},
    {"SupportedAccessTechnologies",                       3592, VT_STRING, 256},
    {"PreferredAccessTechnology",                         3848, VT_STRING, 256},
    {"CurrentAccessTechnology",                           4104, VT_STRING, 256},
    {"AvailableNetworks",                                 4360, VT_STRING, 256},
    {"NetworkRequested",                                  4616, VT_STRING, 256},
    {"NetworkInUse",                                      4872, VT_STRING, 256},
    {"RSSI",                                              1032, VT_STRING, 256},
    {"UpstreamMaxBitRate",                                1288, VT_STRING, 256},
    {"DownstreamMaxBitRate",                              1544, VT_STRING, 256},
    {"X_QUELMOR_Network_Status.Cell_ID",                  1800, VT_STRING, 256},
    {"X_QUELMOR_Network_Status.LAC",                      2056, VT_STRING, 256},
    {"X_QUELMOR_Network_Cellular.Modulo.Model",           5128, VT_STRING, 256},
    {"X_QUELMOR_Network_Cellular.Modulo.Manufacturer",    5384, VT_STRING, 256},
    {"X_QUELMOR_Network_Cellular.Modulo.HardwareVersion", 5640, VT_STRING, 256},
    {"X_QUELMOR_Network_Cellular.Modulo.SoftwareVersion", 5896, VT_STRING, 256},
};
inline constexpr RowLayout kCellularInterface = {kCellularInterfaceColumns, 6408};
static_assert(Fits(kCellularInterface), "CellularInterfaceTable");

// CellularUSIMTable
inline constexpr ColumnDef kCellularUSIMColumns[] = {
    {"pIndex",      4, VT_UINT32, 4},
    {"Status",      8, VT_STRING, 256},
    {"IMSI",      264, VT_STRING, 256},
    {"ICCID",     520, VT_STRING, 256},
    {"MSISDN",    776, VT_STRING, 256},
    {"PINCheck", 1032, VT_STRING, 256},
    {"PIN",      1288, VT_STRING, 256},
};
inline constexpr RowLayout kCellularUSIM = {kCellularUSIMColumns, 1800};
static_assert(Fits(kCellularUSIM), "CellularUSIMTable");

// CellularStatsTable
inline constexpr ColumnDef kCellularStatsColumns[] = {
    {"pIndex",                         4, VT_UINT32, 4},
    {"BytesSent",                      8, VT_STRING, 256},
    {"BytesReceived",                264, VT_STRING, 256},
    {"PacketsSent",                  520, VT_STRING, 256},
    {"PacketsReceived",              776, VT_STRING, 256},
    {"ErrorsSent",                  1032, VT_STRING, 256},
    {"ErrorsReceived",              1288, VT_STRING, 256},
    {"UnicastPacketsSent",          1544, VT_STRING, 256},
    {"UnicastPacketsReceived",      1800, VT_STRING, 256},
    {"DiscardPacketsSent",          2056, VT_STRING, 256},
    {"DiscardPacketsReceived",      2312, VT_STRING, 256},
    {"MulticastPacketsSent",        2568, VT_STRING, 256},
    {"MulticastPacketsReceived",    2824, VT_STRING, 256},
    {"BroadcastPacketsSent",        3080, VT_STRING, 256},
    {"BroadcastPacketsReceived",    3336, VT_STRING, 256},
    {"UnknownProtoPacketsReceived", 3592, VT_STRING, 256},
};
inline constexpr RowLayout kCellularStats = {kCellularStatsColumns, 4104};
static_assert(Fits(kCellularStats), "CellularStatsTable");

// cellularaccesspointTable
inline constexpr ColumnDef kCellularaccesspointColumns[] = {
    {"pIndex",       4, VT_UINT32, 4},
    {"Enable",       8, VT_STRING, 256},
    {"Alias",      264, VT_STRING, 256},
    {"APN",        520, VT_STRING, 256},
    {"Username",   776, VT_STRING, 256},
    {"Password",  1032, VT_STRING, 256},
    {"Proxy",     1288, VT_STRING, 256},
    {"ProxyPort", 1544, VT_STRING, 256},
    {"Interface", 1800, VT_STRING, 256},
};
inline constexpr RowLayout kCellularaccesspoint = {kCellularaccesspointColumns, 2312};
static_assert(Fits(kCellularaccesspoint), "cellularaccesspointTable");
}  // namespace kobd
