// Management agent: cellular interfaces, SIMs and access points.
#pragma once

#include "dictionary/row_layout.h"

// clang-format off
namespace kobd
{
// node_557Table
inline constexpr ColumnDef kNode557Columns[] = {
    {"pPath",                          4, VT_STRING, 256},
    {"Enable",                       260, VT_BOOL,   4},
    {"Status",                       264, VT_STRING, 256},
    {"Alias",                        520, VT_STRING, 256},
    {"Name",                         776, VT_STRING, 256},
    {"LastChange",                  1032, VT_UINT32, 4},
    {"LowerLayers",                 1036, VT_STRING, 256},
    {"Upstream",                    1292, VT_BOOL,   4},
    {"IMEI",                        1296, VT_STRING, 256},
    {"SupportedAccessTechnologies", 1552, VT_STRING, 256},
    {"PreferredAccessTechnology",   1808, VT_STRING, 256},
    {"CurrentAccessTechnology",     2064, VT_STRING, 256},
    {"AvailableNetworks",           2320, VT_STRING, 256},
    {"NetworkRequested",            2576, VT_STRING, 256},
    {"NetworkInUse",                2832, VT_STRING, 256},
    {"RSSI",                        3088, VT_INT32,  4},
    {"UpstreamMaxBitRate",          3092, VT_UINT32, 4},
    {"DownstreamMaxBitRate",        3096, VT_UINT32, 4},
    {"Cell_ID",                     3100, VT_STRING, 256},
    {"LAC",                         3356, VT_STRING, 256},
    {"Model",                       3612, VT_STRING, 256},
    {"Manufacturer",                3868, VT_STRING, 256},
    {"HardwareVersion",             4124, VT_STRING, 256},
    {"SoftwareVersion",             4380, VT_STRING, 256},
};
inline constexpr RowLayout kNode557 = {kNode557Columns, 4892};
static_assert(Fits(kNode557), "node_557Table");

// node_558Table
inline constexpr ColumnDef kNode558Columns[] = {
    {"pPath",       4, VT_STRING, 256},
    {"Status",    260, VT_STRING, 256},
    {"IMSI",      516, VT_STRING, 256},
    {"ICCID",     772, VT_STRING, 256},
    {"MSISDN",   1028, VT_STRING, 256},
    {"PINCheck", 1284, VT_STRING, 256},
    {"PIN",      1540, VT_STRING, 256},
};
inline constexpr RowLayout kNode558 = {kNode558Columns, 2052};
static_assert(Fits(kNode558), "node_558Table");

// node_560Table
inline constexpr ColumnDef kNode560Columns[] = {
    {"pPath",        4, VT_STRING, 256},
    {"Enable",     260, VT_BOOL,   4},
    {"Alias",      264, VT_STRING, 256},
    {"APN",        520, VT_STRING, 256},
    {"Username",   776, VT_STRING, 256},
    {"Password",  1032, VT_STRING, 256},
    {"Proxy",     1288, VT_STRING, 256},
    {"ProxyPort", 1544, VT_UINT32, 4},
    {"Interface", 1548, VT_STRING, 256},
};
inline constexpr RowLayout kNode560 = {kNode560Columns, 2060};
static_assert(Fits(kNode560), "node_560Table");
}  // namespace kobd
