// Management agent: DHCPv4 and DHCPv6 clients and servers.
#pragma once

#include "dictionary/row_layout.h"

// clang-format off
namespace kobd
{
// node_626Table
inline constexpr ColumnDef kNode626Columns[] = {
    {"pPath",                        4, VT_STRING, 256},
    {"Enable",                     260, VT_BOOL,   4},
    {"Alias",                      264, VT_STRING, 256},
    {"Interface",                  520, VT_STRING, 256},
    {"Status",                     776, VT_STRING, 256},
    {"DHCPStatus",                1032, VT_STRING, 256},
    {"Renew",                     1288, VT_BOOL,   4},
    {"IPAddress",                 1292, VT_STRING, 256},
    {"SubnetMask",                1548, VT_STRING, 256},
    {"IPRouters",                 1804, VT_STRING, 256},
    {"DNSServers",                2060, VT_STRING, 256},
    {"LeaseTimeRemaining",        2316, VT_INT32,  4},
    {"DHCPServer",                2320, VT_STRING, 256},
    {"PassthroughEnable",         2576, VT_BOOL,   4},
    {"PassthroughDHCPPool",       2580, VT_STRING, 256},
    {"SentOptionNumberOfEntries", 2836, VT_UINT32, 4},
    {"ReqOptionNumberOfEntries",  2840, VT_UINT32, 4},
};
inline constexpr RowLayout kNode626 = {kNode626Columns, 3100};
static_assert(Fits(kNode626), "node_626Table");

// node_627Table
inline constexpr ColumnDef kNode627Columns[] = {
    {"pPath",     4, VT_STRING, 256},
    {"Enable",  260, VT_BOOL,   4},
    {"Alias",   264, VT_STRING, 256},
    {"Tag",     520, VT_UINT32, 4},
    {"Value",   524, VT_STRING, 256},
};
inline constexpr RowLayout kNode627 = {kNode627Columns, 1036};
static_assert(Fits(kNode627), "node_627Table");

// node_628Table
inline constexpr ColumnDef kNode628Columns[] = {
    {"pPath",     4, VT_STRING, 256},
    {"Enable",  260, VT_BOOL,   4},
    {"Order",   264, VT_UINT32, 4},
    {"Alias",   268, VT_STRING, 256},
    {"Tag",     524, VT_UINT32, 4},
    {"Value",   528, VT_STRING, 256},
};
inline constexpr RowLayout kNode628 = {kNode628Columns, 1040};
static_assert(Fits(kNode628), "node_628Table");

// node_630Table
inline constexpr ColumnDef kNode630Columns[] = {
    {"pPath",                           4, VT_STRING, 256},
    {"Enable",                        260, VT_BOOL,   4},
    {"Status",                        264, VT_STRING, 256},
    {"Alias",                         520, VT_STRING, 256},
    {"Order",                         776, VT_UINT32, 4},
    {"Interface",                     780, VT_STRING, 256},
    {"VendorClassID",                1036, VT_STRING, 256},
    {"VendorClassIDExclude",         1292, VT_BOOL,   4},
    {"VendorClassIDMode",            1296, VT_STRING, 256},
    {"ClientID",                     1552, VT_STRING, 256},
    {"ClientIDExclude",              1808, VT_BOOL,   4},
    {"UserClassID",                  1812, VT_STRING, 256},
    {"UserClassIDExclude",           2068, VT_BOOL,   4},
    {"Chaddr",                       2072, VT_STRING, 256},
    {"ChaddrMask",                   2328, VT_STRING, 256},
    {"ChaddrExclude",                2584, VT_BOOL,   4},
    {"AllowedDevices",               2588, VT_STRING, 256},
    {"MinAddress",                   2844, VT_STRING, 256},
    {"MaxAddress",                   3100, VT_STRING, 256},
    {"ReservedAddresses",            3356, VT_STRING, 256},
    {"SubnetMask",                   3612, VT_STRING, 256},
    {"DNSServers",                   3868, VT_STRING, 256},
    {"DomainName",                   4124, VT_STRING, 256},
    {"IPRouters",                    4380, VT_STRING, 256},
    {"LeaseTime",                    4636, VT_INT32,  4},
    {"StaticAddressNumberOfEntries", 4640, VT_UINT32, 4},
    {"OptionNumberOfEntries",        4644, VT_UINT32, 4},
    {"ClientNumberOfEntries",        4648, VT_UINT32, 4},
};
inline constexpr RowLayout kNode630 = {kNode630Columns, 4908};
static_assert(Fits(kNode630), "node_630Table");

// node_631Table
inline constexpr ColumnDef kNode631Columns[] = {
    {"pPath",     4, VT_STRING, 256},
    {"Enable",  260, VT_BOOL,   4},
    {"Alias",   264, VT_STRING, 256},
    {"Chaddr",  520, VT_STRING, 256},
    {"Yiaddr",  776, VT_STRING, 256},
};
inline constexpr RowLayout kNode631 = {kNode631Columns, 1288};
static_assert(Fits(kNode631), "node_631Table");

// node_632Table
inline constexpr ColumnDef kNode632Columns[] = {
    {"pPath",                         4, VT_STRING, 256},
    {"Alias",                       260, VT_STRING, 256},
    {"Chaddr",                      516, VT_STRING, 256},
    {"Active",                      772, VT_BOOL,   4},
    {"IPv4AddressNumberOfEntries",  776, VT_UINT32, 4},
};
inline constexpr RowLayout kNode632 = {kNode632Columns, 1036};
static_assert(Fits(kNode632), "node_632Table");

// node_633Table
inline constexpr ColumnDef kNode633Columns[] = {
    {"pPath",                 4, VT_STRING, 256},
    {"IPAddress",           260, VT_STRING, 256},
    {"LeaseTimeRemaining",  516, VT_STRING, 256},
};
inline constexpr RowLayout kNode633 = {kNode633Columns, 1028};
static_assert(Fits(kNode633), "node_633Table");

// node_635Table
inline constexpr ColumnDef kNode635Columns[] = {
    {"pPath",                            4, VT_STRING, 256},
    {"Enable",                         260, VT_BOOL,   4},
    {"Alias",                          264, VT_STRING, 256},
    {"Interface",                      520, VT_STRING, 256},
    {"Status",                         776, VT_STRING, 256},
    {"DUID",                          1032, VT_STRING, 256},
    {"RequestAddresses",              1288, VT_BOOL,   4},
    {"RequestPrefixes",               1292, VT_BOOL,   4},
    {"RapidCommit",                   1296, VT_BOOL,   4},
    {"Renew",                         1300, VT_BOOL,   4},
    {"SuggestedT1",                   1304, VT_INT32,  4},
    {"SuggestedT2",                   1308, VT_INT32,  4},
    {"SupportedOptions",              1312, VT_STRING, 256},
    {"RequestedOptions",              1568, VT_STRING, 256},
    {"ServerNumberOfEntries",         1824, VT_UINT32, 4},
    {"SentOptionNumberOfEntries",     1828, VT_UINT32, 4},
    {"ReceivedOptionNumberOfEntries", 1832, VT_UINT32, 4},
};
inline constexpr RowLayout kNode635 = {kNode635Columns, 2092};
static_assert(Fits(kNode635), "node_635Table");

// node_636Table
inline constexpr ColumnDef kNode636Columns[] = {
    {"pPath",                     4, VT_STRING, 256},
    {"SourceAddress",           260, VT_STRING, 256},
    {"DUID",                    516, VT_STRING, 256},
    {"InformationRefreshTime",  772, VT_STRING, 256},
};
inline constexpr RowLayout kNode636 = {kNode636Columns, 1284};
static_assert(Fits(kNode636), "node_636Table");

// node_638Table
inline constexpr ColumnDef kNode638Columns[] = {
    {"pPath",                    4, VT_STRING, 256},
    {"Enable",                 260, VT_BOOL,   4},
    {"Status",                 264, VT_STRING, 256},
    {"Alias",                  520, VT_STRING, 256},
    {"Order",                  776, VT_UINT32, 4},
    {"Interface",              780, VT_STRING, 256},
    {"DUID",                  1036, VT_STRING, 256},
    {"DUIDExclude",           1292, VT_BOOL,   4},
    {"VendorClassID",         1296, VT_STRING, 256},
    {"VendorClassIDExclude",  1552, VT_BOOL,   4},
    {"UserClassID",           1556, VT_STRING, 256},
    {"UserClassIDExclude",    1812, VT_BOOL,   4},
    {"SourceAddress",         1816, VT_STRING, 256},
    {"SourceAddressMask",     2072, VT_STRING, 256},
    {"SourceAddressExclude",  2328, VT_BOOL,   4},
    {"ClientNumberOfEntries", 2332, VT_UINT32, 4},
};
inline constexpr RowLayout kNode638 = {kNode638Columns, 2592};
static_assert(Fits(kNode638), "node_638Table");

// node_639Table
inline constexpr ColumnDef kNode639Columns[] = {
    {"pPath",                         4, VT_STRING, 256},
    {"Alias",                       260, VT_STRING, 256},
    {"SourceAddress",               516, VT_STRING, 256},
    {"Active",                      772, VT_BOOL,   4},
    {"IPv6AddressNumberOfEntries",  776, VT_UINT32, 4},
    {"IPv6PrefixNumberOfEntries",   780, VT_UINT32, 4},
    {"OptionNumberOfEntries",       784, VT_UINT32, 4},
};
inline constexpr RowLayout kNode639 = {kNode639Columns, 1044};
static_assert(Fits(kNode639), "node_639Table");

// node_640Table
inline constexpr ColumnDef kNode640Columns[] = {
    {"pPath",                4, VT_STRING, 256},
    {"IPAddress",          260, VT_STRING, 256},
    {"PreferredLifetime",  516, VT_STRING, 256},
    {"ValidLifetime",      772, VT_STRING, 256},
};
inline constexpr RowLayout kNode640 = {kNode640Columns, 1284};
static_assert(Fits(kNode640), "node_640Table");

// node_641Table
inline constexpr ColumnDef kNode641Columns[] = {
    {"pPath",                4, VT_STRING, 256},
    {"Prefix",             260, VT_STRING, 256},
    {"PreferredLifetime",  516, VT_STRING, 256},
    {"ValidLifetime",      772, VT_STRING, 256},
};
inline constexpr RowLayout kNode641 = {kNode641Columns, 1284};
static_assert(Fits(kNode641), "node_641Table");
}  // namespace kobd
