// Traffic, devices on the network and their bindings.
#pragma once

#include "dictionary/row_layout.h"

// clang-format off
namespace kobd
{
// FlowTable, FlowTable_24G, FlowTable_24G_guest, FlowTable_5G, FlowTable_5G_guest, MobileTable
inline constexpr ColumnDef kFlowColumns[] = {
    {"Name",                       36, VT_STRING, 32},
    {"RecvBytes",                  68, VT_STRING, 32},
    {"RecvPackets",               100, VT_STRING, 32},
    {"RecvErrs",                  132, VT_STRING, 32},
    {"RecvDrop",                  164, VT_STRING, 32},
    {"SendBytes",                 196, VT_STRING, 32},
    {"SendPackets",               228, VT_STRING, 32},
    {"SendErrs",                  260, VT_STRING, 32},
    {"SendDrop",                  292, VT_STRING, 32},
    {"RetransCount",              324, VT_UINT32, 4},
    {"FailedRetransCount",        328, VT_UINT32, 4},
    {"RetryCount",                332, VT_UINT32, 4},
    {"MultipleRetryCount",        336, VT_UINT32, 4},
    {"ACKFailureCount",           340, VT_UINT32, 4},
    {"AggregatedPacketCount",     344, VT_UINT32, 4},
    {"UnicastPacketsSent",        348, VT_UINT32, 4},
    {"UnicastPacketsReceived",    352, VT_UINT32, 4},
    {"MulticastPacketsSent",      356, VT_UINT32, 4},
    {"MulticastPacketsReceived",  360, VT_UINT32, 4},
    {"BroadcastPacketsSent",      364, VT_UINT32, 4},
    {"BroadcastPacketsReceived",  368, VT_UINT32, 4},
    {"Noise",                       4, VT_STRING, 32},
};
inline constexpr RowLayout kFlow = {kFlowColumns, 372};
static_assert(Fits(kFlow), "FlowTable");

// OnlineDeviceTable, OnlineDeviceTable_24G, OnlineDeviceTable_24G_guest, OnlineDeviceTable_5G, OnlineDeviceTable_5G_guest
inline constexpr ColumnDef kOnlineDeviceColumns[] = {
    {"LeaseTime",               4, VT_STRING,       50},
    {"IP",                     54, VT_STRING,       64},
    {"MAC",                   118, VT_STRING_UPPER, 64},
    {"HostName",              182, VT_STRING,       50},
    {"Type",                  232, VT_STRING,       50},
    {"TxBytes",               282, VT_STRING,       50},
    {"RxBytes",               332, VT_STRING,       50},
    {"Signal",                382, VT_STRING,       50},
    {"OperatingStandard",     432, VT_STRING,       50},
    {"AuthenticationState",   636, VT_BOOL,         4},
    {"LastDataDownlinkRate",  640, VT_UINT32,       4},
    {"LastDataUplinkRate",    644, VT_UINT32,       4},
    {"PacketsSent",           648, VT_UINT32,       4},
    {"PacketsReceived",       652, VT_UINT32,       4},
    {"ErrorsSent",            656, VT_UINT32,       4},
    {"SignalBuf",             482, VT_STRING,       50},
    {"TxrateBuf",             532, VT_STRING,       50},
    {"RxrateBuf",             582, VT_STRING,       50},
    {"SNR",                   632, VT_INT32,        4},
};
inline constexpr RowLayout kOnlineDevice = {kOnlineDeviceColumns, 660};
static_assert(Fits(kOnlineDevice), "OnlineDeviceTable");

// IpMacBindTable
inline constexpr ColumnDef kIpMacBindColumns[] = {
    {"IP",      4, VT_IPV4,   4},
    {"MAC",     8, VT_MAC,    6},
    {"Name",   14, VT_STRING, 32},
};
inline constexpr RowLayout kIpMacBind = {kIpMacBindColumns, 64};
static_assert(Fits(kIpMacBind), "IpMacBindTable");

// VpnStatusTable
inline constexpr ColumnDef kVpnStatusColumns[] = {
    {"Account",               4, VT_STRING, 128},
    {"VpnClientIPAddress",  132, VT_STRING, 32},
    {"VpnServerIPAddress",  164, VT_STRING, 32},
    {"OnlineTime",          196, VT_INT32,  4},
};
inline constexpr RowLayout kVpnStatus = {kVpnStatusColumns, 200};
static_assert(Fits(kVpnStatus), "VpnStatusTable");

// EthernetStats
inline constexpr ColumnDef kEthernetStatsColumns[] = {
    {"BytesSent",        8, VT_UINT64, 8},
    {"BytesReceived",   16, VT_UINT64, 8},
};
inline constexpr RowLayout kEthernetStats = {kEthernetStatsColumns, 24};
static_assert(Fits(kEthernetStats), "EthernetStats");
}  // namespace kobd
