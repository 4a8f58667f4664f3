// Filters, port rules, parental control and the firewall of the management agent.
#pragma once

#include "dictionary/row_layout.h"

// clang-format off
namespace kobd
{
// FwMacFilterTable
inline constexpr ColumnDef kFwMacFilterColumns[] = {
    {"MAC",        24, VT_STRING_UPPER, 20},
    {"MAC_LIST",    4, VT_STRING_UPPER, 20},
};
inline constexpr RowLayout kFwMacFilter = {kFwMacFilterColumns, 64};
static_assert(Fits(kFwMacFilter), "FwMacFilterTable");

// FwPortFilterTable
inline constexpr ColumnDef kFwPortFilterColumns[] = {
    {"Protocol",         4, VT_STRING, 45},
    {"DestIPAddress",   49, VT_STRING, 45},
    {"DestPort",        94, VT_STRING, 45},
};
inline constexpr RowLayout kFwPortFilter = {kFwPortFilterColumns, 172};
static_assert(Fits(kFwPortFilter), "FwPortFilterTable");

// FwIpFilterTable
inline constexpr ColumnDef kFwIpFilterColumns[] = {
    {"DestIPAddress",    4, VT_STRING, 64},
    {"IP_LIST",         68, VT_STRING, 32},
};
inline constexpr RowLayout kFwIpFilter = {kFwIpFilterColumns, 132};
static_assert(Fits(kFwIpFilter), "FwIpFilterTable");

// FwUrlFilterTable
inline constexpr ColumnDef kFwUrlFilterColumns[] = {
    {"URL",    4, VT_STRING, 128},
};
inline constexpr RowLayout kFwUrlFilter = {kFwUrlFilterColumns, 260};
static_assert(Fits(kFwUrlFilter), "FwUrlFilterTable");

// FwPortForwardTable, PortRedirectTable
inline constexpr ColumnDef kFwPortForwardColumns[] = {
    {"Protocol",         4, VT_STRING, 45},
    {"DestIPAddress",   49, VT_STRING, 45},
    {"IP",              49, VT_STRING, 45, "DestIPAddress"},
    {"DestPort",        94, VT_STRING, 45},
    {"SrcPort",        139, VT_STRING, 45},
    {"MinPort",        184, VT_STRING, 45},
    {"MaxPort",        229, VT_STRING, 45},
    {"Interface",      274, VT_STRING, 45},
};
inline constexpr RowLayout kFwPortForward = {kFwPortForwardColumns, 352};
static_assert(Fits(kFwPortForward), "FwPortForwardTable");

// FwAccessRestrictionTable
inline constexpr ColumnDef kFwAccessRestrictionColumns[] = {
    {"Name",         4, VT_STRING,       128},
    {"Enable",     516, VT_STRING,       128},
    {"Weekdays",   132, VT_STRING,       128},
    {"TimeStart",  260, VT_STRING,       128},
    {"TimeStop",   388, VT_STRING,       128},
    {"Host",       644, VT_STRING_UPPER, 128},
};
inline constexpr RowLayout kFwAccessRestriction = {kFwAccessRestrictionColumns, 804};
static_assert(Fits(kFwAccessRestriction), "FwAccessRestrictionTable");

// FwParentControlTable, ParentalControlTable
inline constexpr ColumnDef kFwParentControlColumns[] = {
    {"Enable",         644, VT_STRING, 128},
    {"ParentCtrList",    4, VT_STRING, 128},
    {"Name",           132, VT_STRING, 128},
    {"Weekdays",       260, VT_STRING, 128},
    {"Period",         260, VT_STRING, 128, "Weekdays"},
    {"TimeStart",      388, VT_STRING, 128},
    {"StartTime",      388, VT_STRING, 128, "TimeStart"},
    {"TimeStop",       516, VT_STRING, 128},
    {"EndTime",        516, VT_STRING, 128, "TimeStop"},
    {"Host",           772, VT_STRING, 128},
    {"MAC",            772, VT_STRING, 128, "Host"},
    {"Target",         932, VT_STRING, 128},
};
inline constexpr RowLayout kFwParentControl = {kFwParentControlColumns, 1060};
static_assert(Fits(kFwParentControl), "FwParentControlTable");

// FwPortTriggerTable
inline constexpr ColumnDef kFwPortTriggerColumns[] = {
    {"OutProtocol",    4, VT_STRING, 20},
    {"OutPort",       24, VT_STRING, 20},
    {"InProtocol",    44, VT_STRING, 20},
    {"InPort",        64, VT_STRING, 20},
};
inline constexpr RowLayout kFwPortTrigger = {kFwPortTriggerColumns, 104};
static_assert(Fits(kFwPortTrigger), "FwPortTriggerTable");

// FwNewParentControlTable
inline constexpr ColumnDef kFwNewParentControlColumns[] = {
    {"Enable",    4, VT_STRING, 128},
    {"Name",    132, VT_STRING, 128},
    {"Host",    260, VT_STRING, 18},
    {"Time",    310, VT_STRING, 600},
};
inline constexpr RowLayout kFwNewParentControl = {kFwNewParentControlColumns, 912};
static_assert(Fits(kFwNewParentControl), "FwNewParentControlTable");

// UPnPTable
inline constexpr ColumnDef kUPnPColumns[] = {
    {"Protocol",        4, VT_STRING, 128},
    {"ExternPort",    132, VT_STRING, 128},
    {"IPAddress",     260, VT_STRING, 128},
    {"Internalport",  388, VT_STRING, 128},
    {"Description",   516, VT_STRING, 128},
};
inline constexpr RowLayout kUPnP = {kUPnPColumns, 644};
static_assert(Fits(kUPnP), "UPnPTable");

// FirewallLevelTable
inline constexpr ColumnDef kFirewallLevelColumns[] = {
    {"Name",                100, VT_STRING, 65},
    {"Alias",               165, VT_STRING, 65},
    {"Order",                68, VT_STRING, 32},
    {"Chain",               487, VT_STRING, 32},
    {"Description",         230, VT_STRING, 257},
    {"DefaultPolicy",       519, VT_STRING, 32},
    {"DefaultLogPolicy",     36, VT_STRING, 32},
    {"PortMappingEnabled",    4, VT_STRING, 32},
};
inline constexpr RowLayout kFirewallLevel = {kFirewallLevelColumns, 680};
static_assert(Fits(kFirewallLevel), "FirewallLevelTable");

// FirewallChainTable
inline constexpr ColumnDef kFirewallChainColumns[] = {
    {"Alias",     36, VT_STRING, 65},
    {"Name",     101, VT_STRING, 65},
    {"Creator",  166, VT_STRING, 32},
    {"Enable",     4, VT_STRING, 32},
};
inline constexpr RowLayout kFirewallChain = {kFirewallChainColumns, 328};
static_assert(Fits(kFirewallChain), "FirewallChainTable");

// FirewallRuleTable
inline constexpr ColumnDef kFirewallRuleColumns[] = {
    {"Enable",                  260, VT_STRING, 32},
    {"pPath",                     4, VT_STRING, 256},
    {"Log",                     292, VT_STRING, 32},
    {"SourceInterfaceExclude",  324, VT_STRING, 32},
    {"SourceAllInterfaces",     356, VT_STRING, 32},
    {"DestInterfaceExclude",    388, VT_STRING, 32},
    {"DestAllInterfaces",       420, VT_STRING, 32},
    {"DestIPExclude",           452, VT_STRING, 32},
    {"SourceIPExclude",         484, VT_STRING, 32},
    {"ProtocolExclude",         516, VT_STRING, 32},
    {"DestPortExclude",         548, VT_STRING, 32},
    {"SourcePortExclude",       580, VT_STRING, 32},
    {"DSCPExclude",             612, VT_STRING, 32},
    {"Protocol",                644, VT_INT32,  4},
    {"DSCP",                    668, VT_INT32,  4},
    {"Order",                   652, VT_INT32,  4},
    {"DestPort",                648, VT_INT32,  4},
    {"DestPortRangeMax",        656, VT_INT32,  4},
    {"SourcePort",              660, VT_INT32,  4},
    {"SourcePortRangeMax",      664, VT_INT32,  4},
    {"IPVersion",               672, VT_INT32,  4},
    {"Status",                  676, VT_STRING, 32},
    {"Alias",                   708, VT_STRING, 65},
    {"Target",                  773, VT_STRING, 32},
    {"TargetChain",             805, VT_STRING, 257},
    {"CreationDate",           1062, VT_STRING, 32},
    {"ExpiryDate",             1094, VT_STRING, 32},
    {"SourceInterface",        1126, VT_STRING, 257},
    {"DestInterface",          1383, VT_STRING, 257},
    {"DestIP",                 1640, VT_STRING, 65},
    {"DestMask",               1705, VT_STRING, 65},
    {"SourceIP",               1770, VT_STRING, 65},
    {"SourceMask",             1835, VT_STRING, 65},
    {"Description",            1900, VT_STRING, 257},
};
inline constexpr RowLayout kFirewallRule = {kFirewallRuleColumns, 2672};
static_assert(Fits(kFirewallRule), "FirewallRuleTable");
}  // namespace kobd
