// Management agent: Ethernet links, bridges and IP interfaces.
#pragma once

#include "dictionary/row_layout.h"

// clang-format off
namespace kobd
{
// node_588Table
inline constexpr ColumnDef kNode588Columns[] = {
    {"pPath",             4, VT_STRING, 256},
    {"Enable",          260, VT_BOOL,   4},
    {"Status",          264, VT_STRING, 256},
    {"Alias",           520, VT_STRING, 256},
    {"Name",            776, VT_STRING, 256},
    {"LastChange",     1032, VT_UINT32, 4},
    {"LowerLayers",    1036, VT_STRING, 256},
    {"Upstream",       1292, VT_BOOL,   4},
    {"MACAddress",     1296, VT_STRING, 256},
    {"MaxBitRate",     1552, VT_INT32,  4},
    {"CurrentBitRate", 1556, VT_UINT32, 4},
    {"DuplexMode",     1560, VT_STRING, 256},
    {"EEECapability",  1816, VT_BOOL,   4},
    {"EEEEnable",      1820, VT_BOOL,   4},
};
inline constexpr RowLayout kNode588 = {kNode588Columns, 2080};
static_assert(Fits(kNode588), "node_588Table");

// node_589Table
inline constexpr ColumnDef kNode589Columns[] = {
    {"pPath",                          4, VT_STRING, 256},
    {"BytesSent",                    264, VT_UINT64, 8},
    {"BytesReceived",                272, VT_UINT64, 8},
    {"PacketsSent",                  280, VT_UINT64, 8},
    {"PacketsReceived",              288, VT_UINT64, 8},
    {"ErrorsSent",                   296, VT_UINT32, 4},
    {"ErrorsReceived",               300, VT_UINT32, 4},
    {"UnicastPacketsSent",           304, VT_UINT64, 8},
    {"UnicastPacketsReceived",       312, VT_UINT64, 8},
    {"DiscardPacketsSent",           320, VT_UINT32, 4},
    {"DiscardPacketsReceived",       324, VT_UINT32, 4},
    {"MulticastPacketsSent",         328, VT_UINT64, 8},
    {"MulticastPacketsReceived",     336, VT_UINT64, 8},
    {"BroadcastPacketsSent",         344, VT_UINT64, 8},
    {"BroadcastPacketsReceived",     352, VT_UINT64, 8},
    {"UnknownProtoPacketsReceived",  360, VT_UINT32, 4},
};
inline constexpr RowLayout kNode589 = {kNode589Columns, 624};
static_assert(Fits(kNode589), "node_589Table");

// node_591Table
inline constexpr ColumnDef kNode591Columns[] = {
    {"pPath",                  4, VT_STRING, 256},
    {"Enable",               260, VT_BOOL,   4},
    {"Status",               264, VT_STRING, 256},
    {"Alias",                520, VT_STRING, 256},
    {"Standard",             776, VT_STRING, 256},
    {"PortNumberOfEntries", 1032, VT_UINT32, 4},
};
inline constexpr RowLayout kNode591 = {kNode591Columns, 1292};
static_assert(Fits(kNode591), "node_591Table");

// node_592Table
inline constexpr ColumnDef kNode592Columns[] = {
    {"pPath",             4, VT_STRING, 256},
    {"Enable",          260, VT_BOOL,   4},
    {"Status",          264, VT_STRING, 256},
    {"Alias",           520, VT_STRING, 256},
    {"Name",            776, VT_STRING, 256},
    {"LastChange",     1032, VT_UINT32, 4},
    {"LowerLayers",    1036, VT_STRING, 256},
    {"ManagementPort", 1292, VT_BOOL,   4},
    {"PortState",      1296, VT_STRING, 256},
};
inline constexpr RowLayout kNode592 = {kNode592Columns, 1808};
static_assert(Fits(kNode592), "node_592Table");

// node_593Table
inline constexpr ColumnDef kNode593Columns[] = {
    {"pPath",                       4, VT_STRING, 256},
    {"BytesSent",                 264, VT_UINT64, 8},
    {"BytesReceived",             272, VT_UINT64, 8},
    {"PacketsSent",               280, VT_UINT64, 8},
    {"PacketsReceived",           288, VT_UINT64, 8},
    {"ErrorsSent",                296, VT_UINT32, 4},
    {"ErrorsReceived",            300, VT_UINT32, 4},
    {"UnicastPacketsSent",        304, VT_UINT64, 8},
    {"UnicastPacketsReceived",    312, VT_UINT64, 8},
    {"DiscardPacketsSent",        320, VT_UINT32, 4},
    {"DiscardPacketsReceived",    324, VT_UINT32, 4},
    {"MulticastPacketsSent",      328, VT_UINT64, 8},
    {"MulticastPacketsReceived",  336, VT_UINT64, 8},
    {"BroadcastPacketsSent",      344, VT_UINT64, 8},
    {"BroadcastPacketsReceived",  352, VT_UINT64, 8},
};
inline constexpr RowLayout kNode593 = {kNode593Columns, 616};
static_assert(Fits(kNode593), "node_593Table");

// node_595Table
inline constexpr ColumnDef kNode595Columns[] = {
    {"pPath",                         4, VT_STRING, 256},
    {"Enable",                      260, VT_BOOL,   4},
    {"IPv4Enable",                  264, VT_BOOL,   4},
    {"IPv6Enable",                  268, VT_BOOL,   4},
    {"ULAEnable",                   272, VT_BOOL,   4},
    {"Status",                      276, VT_STRING, 256},
    {"Alias",                       532, VT_STRING, 256},
    {"Name",                        788, VT_STRING, 256},
    {"LastChange",                 1044, VT_UINT32, 4},
    {"LowerLayers",                1048, VT_STRING, 256},
    {"Router",                     1304, VT_STRING, 256},
    {"Reset",                      1560, VT_BOOL,   4},
    {"MaxMTUSize",                 1564, VT_UINT32, 4},
    {"Type",                       1568, VT_STRING, 256},
    {"Loopback",                   1824, VT_BOOL,   4},
    {"IPv4AddressNumberOfEntries", 1828, VT_UINT32, 4},
    {"IPv6AddressNumberOfEntries", 1832, VT_UINT32, 4},
    {"IPv6PrefixNumberOfEntries",  1836, VT_UINT32, 4},
};
inline constexpr RowLayout kNode595 = {kNode595Columns, 2096};
static_assert(Fits(kNode595), "node_595Table");

// node_596Table
inline constexpr ColumnDef kNode596Columns[] = {
    {"pPath",             4, VT_STRING, 256},
    {"Enable",          260, VT_BOOL,   4},
    {"Status",          264, VT_STRING, 256},
    {"Alias",           520, VT_STRING, 256},
    {"IPAddress",       776, VT_STRING, 256},
    {"SubnetMask",     1032, VT_STRING, 256},
    {"AddressingType", 1288, VT_STRING, 256},
};
inline constexpr RowLayout kNode596 = {kNode596Columns, 1800};
static_assert(Fits(kNode596), "node_596Table");

// node_597Table
inline constexpr ColumnDef kNode597Columns[] = {
    {"pPath",                       4, VT_STRING, 256},
    {"BytesSent",                 264, VT_UINT64, 8},
    {"BytesReceived",             272, VT_UINT64, 8},
    {"PacketsSent",               280, VT_UINT64, 8},
    {"PacketsReceived",           288, VT_UINT64, 8},
    {"ErrorsSent",                296, VT_UINT32, 4},
    {"ErrorsReceived",            300, VT_UINT32, 4},
    {"UnicastPacketsSent",        304, VT_UINT64, 8},
    {"UnicastPacketsReceived",    312, VT_UINT64, 8},
    {"DiscardPacketsSent",        320, VT_UINT32, 4},
    {"DiscardPacketsReceived",    324, VT_UINT32, 4},
    {"MulticastPacketsSent",      328, VT_UINT64, 8},
    {"MulticastPacketsReceived",  336, VT_UINT64, 8},
    {"BroadcastPacketsSent",      344, VT_UINT64, 8},
    {"BroadcastPacketsReceived",  352, VT_UINT64, 8},
};
inline constexpr RowLayout kNode597 = {kNode597Columns, 616};
static_assert(Fits(kNode597), "node_597Table");

// node_598Table
inline constexpr ColumnDef kNode598Columns[] = {
    {"pPath",                4, VT_STRING, 256},
    {"Enable",             260, VT_BOOL,   4},
    {"Status",             264, VT_STRING, 256},
    {"IPAddressStatus",    520, VT_STRING, 256},
    {"Alias",              776, VT_STRING, 256},
    {"IPAddress",         1032, VT_STRING, 256},
    {"Origin",            1288, VT_STRING, 256},
    {"Prefix",            1544, VT_STRING, 256},
    {"PreferredLifetime", 1800, VT_STRING, 256},
    {"ValidLifetime",     2056, VT_STRING, 256},
    {"Anycast",           2312, VT_BOOL,   4},
};
inline constexpr RowLayout kNode598 = {kNode598Columns, 2572};
static_assert(Fits(kNode598), "node_598Table");

// node_599Table
inline constexpr ColumnDef kNode599Columns[] = {
    {"pPath",                4, VT_STRING, 256},
    {"Enable",             260, VT_BOOL,   4},
    {"Status",             264, VT_STRING, 256},
    {"PrefixStatus",       520, VT_STRING, 256},
    {"Alias",              776, VT_STRING, 256},
    {"Prefix",            1032, VT_STRING, 256},
    {"Origin",            1288, VT_STRING, 256},
    {"StaticType",        1544, VT_STRING, 256},
    {"ParentPrefix",      1800, VT_STRING, 256},
    {"ChildPrefixBits",   2056, VT_STRING, 256},
    {"OnLink",            2312, VT_BOOL,   4},
    {"Autonomous",        2316, VT_BOOL,   4},
    {"PreferredLifetime", 2320, VT_STRING, 256},
    {"ValidLifetime",     2576, VT_STRING, 256},
};
inline constexpr RowLayout kNode599 = {kNode599Columns, 3088};
static_assert(Fits(kNode599), "node_599Table");
}  // namespace kobd
