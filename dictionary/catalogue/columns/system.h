// Management agent: voice, processors, hosts, users and lights.
#pragma once

#include "dictionary/row_layout.h"

// clang-format off
namespace kobd
{
// VoiceTable
inline constexpr ColumnDef kVoiceColumns[] = {
    {"pPath",      4, VT_STRING, 256},
    {"Alias",    260, VT_STRING, 64},
    {"TimerT1",  324, VT_UINT32, 4},
    {"TimerT2",  328, VT_UINT32, 4},
    {"TimerT4",  332, VT_UINT32, 4},
    {"TimerA",   336, VT_UINT32, 4},
    {"TimerB",   340, VT_UINT32, 4},
    {"TimerC",   344, VT_UINT32, 4},
    {"TimerD",   348, VT_UINT32, 4},
    {"TimerE",   352, VT_UINT32, 4},
    {"TimerF",   356, VT_UINT32, 4},
    {"TimerG",   360, VT_UINT32, 4},
    {"TimerH",   364, VT_UINT32, 4},
    {"TimerI",   368, VT_UINT32, 4},
    {"TimerJ",   372, VT_UINT32, 4},
    {"TimerK",   376, VT_UINT32, 4},
};
inline constexpr RowLayout kVoice = {kVoiceColumns, 636};
static_assert(Fits(kVoice), "VoiceTable");

// processorTable
inline constexpr ColumnDef kProcessorColumns[] = {
    {"pPath",           4, VT_STRING, 256},
    {"Alias",         260, VT_STRING, 256},
    {"Architecture",  516, VT_STRING, 256},
};
inline constexpr RowLayout kProcessor = {kProcessorColumns, 1028};
static_assert(Fits(kProcessor), "processorTable");

// hostsTable
inline constexpr ColumnDef kHostsColumns[] = {
    {"pPath",                         4, VT_STRING, 256},
    {"Alias",                       260, VT_STRING, 256},
    {"PhysAddress",                 516, VT_STRING, 256},
    {"IPAddress",                   772, VT_STRING, 256},
    {"AddressSource",              1028, VT_STRING, 256},
    {"DHCPClient",                 1284, VT_STRING, 256},
    {"LeaseTimeRemaining",         1540, VT_INT32,  4},
    {"AssociatedDevice",           1544, VT_STRING, 256},
    {"Layer1Interface",            1800, VT_STRING, 256},
    {"Layer3Interface",            2056, VT_STRING, 256},
    {"InterfaceType",              2312, VT_STRING, 256},
    {"VendorClassID",              2568, VT_STRING, 256},
    {"ClientID",                   2824, VT_STRING, 256},
    {"UserClassID",                3080, VT_STRING, 256},
    {"HostName",                   3336, VT_STRING, 256},
    {"Active",                     3592, VT_BOOL,   4},
    {"ActiveLastChange",           3596, VT_INT32,  4},
    {"IPv4AddressNumberOfEntries", 3600, VT_UINT32, 4},
    {"IPv6AddressNumberOfEntries", 3604, VT_UINT32, 4},
};
inline constexpr RowLayout kHosts = {kHostsColumns, 3864};
static_assert(Fits(kHosts), "hostsTable");

// IPV4Table
inline constexpr ColumnDef kIPV4Columns[] = {
    {"pPath",        4, VT_STRING, 256},
    {"IPAddress",  260, VT_STRING, 256},
};
inline constexpr RowLayout kIPV4 = {kIPV4Columns, 772};
static_assert(Fits(kIPV4), "IPV4Table");

// IPV6Table
inline constexpr ColumnDef kIPV6Columns[] = {
    {"pPath",        4, VT_STRING, 256},
    {"IPAddress",  260, VT_STRING, 256},
};
inline constexpr RowLayout kIPV6 = {kIPV6Columns, 772};
static_assert(Fits(kIPV6), "IPV6Table");

// usersTable
inline constexpr ColumnDef kUsersColumns[] = {
    {"pPath",                  4, VT_STRING, 256},
    {"Alias",                260, VT_STRING, 256},
    {"Enable",               516, VT_BOOL,   4},
    {"RemoteAccessCapable",  520, VT_BOOL,   4},
    {"Username",             524, VT_STRING, 256},
    {"Password",             780, VT_STRING, 256},
    {"Language",            1036, VT_STRING, 256},
};
inline constexpr RowLayout kUsers = {kUsersColumns, 1548};
static_assert(Fits(kUsers), "usersTable");

// ledsTable
inline constexpr ColumnDef kLedsColumns[] = {
    {"pPath",                          4, VT_STRING, 256},
    {"Alias",                        260, VT_STRING, 256},
    {"Name",                         516, VT_STRING, 256},
    {"Status",                       772, VT_STRING, 256},
    {"Reason",                      1028, VT_STRING, 256},
    {"CyclePeriodRepetitions",      1284, VT_INT32,  4},
    {"Location",                    1288, VT_STRING, 256},
    {"RelativeXPosition",           1544, VT_UINT32, 4},
    {"RelativeYPosition",           1548, VT_UINT32, 4},
    {"CycleElementNumberOfEntries", 1552, VT_UINT32, 4},
};
inline constexpr RowLayout kLeds = {kLedsColumns, 1812};
static_assert(Fits(kLeds), "ledsTable");
}  // namespace kobd
