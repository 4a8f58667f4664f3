// DNS, dynamic DNS, NAT and fixed leases.
#pragma once

#include "dictionary/row_layout.h"

// clang-format off
namespace kobd
{
// DnsClientTable
inline constexpr ColumnDef kDnsClientColumns[] = {
    {"Enable",       4, VT_STRING, 32},
    {"Status",      36, VT_STRING, 32},
    {"Alias",       68, VT_STRING, 32},
    {"DnsServer",  100, VT_STRING, 32},
    {"Interface",  132, VT_STRING, 32},
    {"Type",       164, VT_STRING, 32},
};
inline constexpr RowLayout kDnsClient = {kDnsClientColumns, 228};
static_assert(Fits(kDnsClient), "DnsClientTable");

// DnsRelayTable
inline constexpr ColumnDef kDnsRelayColumns[] = {
    {"Enable",       4, VT_STRING, 32},
    {"Status",      36, VT_STRING, 32},
    {"Alias",       68, VT_STRING, 32},
    {"DnsServer",  100, VT_STRING, 32},
    {"Interface",  132, VT_STRING, 32},
    {"Type",       164, VT_STRING, 32},
};
inline constexpr RowLayout kDnsRelay = {kDnsRelayColumns, 228};
static_assert(Fits(kDnsRelay), "DnsRelayTable");

// DdnsClientTable
inline constexpr ColumnDef kDdnsClientColumns[] = {
    {"Enable",       4, VT_STRING, 32},
    {"Status",      36, VT_STRING, 32},
    {"Alias",       68, VT_STRING, 32},
    {"LastError",  100, VT_STRING, 32},
    {"Server",     132, VT_STRING, 32},
    {"Interface",  164, VT_STRING, 32},
    {"Username",   196, VT_STRING, 32},
    {"Password",   228, VT_STRING, 32},
};
inline constexpr RowLayout kDdnsClient = {kDdnsClientColumns, 292};
static_assert(Fits(kDdnsClient), "DdnsClientTable");

// DdnsHostnameTable
inline constexpr ColumnDef kDdnsHostnameColumns[] = {
    {"Enable",      260, VT_STRING, 32},
    {"pPath",         4, VT_STRING, 256},
    {"Status",      292, VT_STRING, 32},
    {"Name",        324, VT_STRING, 32},
    {"LastUpdate",  356, VT_STRING, 32},
};
inline constexpr RowLayout kDdnsHostname = {kDdnsHostnameColumns, 420};
static_assert(Fits(kDdnsHostname), "DdnsHostnameTable");

// NatInterfaceTable
inline constexpr ColumnDef kNatInterfaceColumns[] = {
    {"Enable",                   4, VT_STRING, 45},
    {"Status",                  49, VT_STRING, 45},
    {"Alias",                   94, VT_STRING, 45},
    {"Interface",              139, VT_STRING, 45},
    {"TCPTranslationTimeout",  184, VT_INT32,  4},
    {"UDPTranslationTimeout",  188, VT_INT32,  4},
};
inline constexpr RowLayout kNatInterface = {kNatInterfaceColumns, 240};
static_assert(Fits(kNatInterface), "NatInterfaceTable");

// NatPortMappingTable
inline constexpr ColumnDef kNatPortMappingColumns[] = {
    {"Enable",                  4, VT_STRING, 45},
    {"Status",                 49, VT_STRING, 45},
    {"Alias",                  94, VT_STRING, 45},
    {"Interface",             139, VT_STRING, 45},
    {"AllInterfaces",         184, VT_STRING, 45},
    {"LeaseDuration",         232, VT_UINT32, 4},
    {"RemoteHost",            236, VT_STRING, 45},
    {"ExternalPort",          284, VT_UINT32, 4},
    {"ExternalPortEndRange",  288, VT_UINT32, 4},
    {"SrcPort",               292, VT_STRING, 45},
    {"InternalPort",          340, VT_UINT32, 4},
    {"Protocol",              344, VT_STRING, 45},
    {"InternalClient",        389, VT_STRING, 45},
    {"Description",           434, VT_STRING, 45},
};
inline constexpr RowLayout kNatPortMapping = {kNatPortMappingColumns, 524};
static_assert(Fits(kNatPortMapping), "NatPortMappingTable");

// DhcpStaticAddressTable
inline constexpr ColumnDef kDhcpStaticAddressColumns[] = {
    {"Enable",    4, VT_STRING, 16},
    {"Alias",    20, VT_STRING, 65},
    {"Chaddr",   85, VT_STRING, 18},
    {"Yiaddr",  103, VT_STRING, 16},
};
inline constexpr RowLayout kDhcpStaticAddress = {kDhcpStaticAddressColumns, 152};
static_assert(Fits(kDhcpStaticAddress), "DhcpStaticAddressTable");
}  // namespace kobd
