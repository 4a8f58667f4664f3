// Management agent: results of transfer tests and traces.
#pragma once

#include "dictionary/row_layout.h"

// clang-format off
namespace kobd
{
// node_603Table
inline constexpr ColumnDef kNode603Columns[] = {
    {"pPath",                  4, VT_STRING, 256},
    {"ROMTime",              260, VT_STRING, 256},
    {"BOMTime",              516, VT_STRING, 256},
    {"EOMTime",              772, VT_STRING, 256},
    {"TestBytesReceived",   1028, VT_UINT32, 4},
    {"TotalBytesReceived",  1032, VT_UINT32, 4},
    {"TotalBytesSent",      1036, VT_UINT32, 4},
    {"TCPOpenRequestTime",  1040, VT_STRING, 256},
    {"TCPOpenResponseTime", 1296, VT_STRING, 256},
};
inline constexpr RowLayout kNode603 = {kNode603Columns, 1808};
static_assert(Fits(kNode603), "node_603Table");

// node_604Table
inline constexpr ColumnDef kNode604Columns[] = {
    {"pPath",                 4, VT_STRING, 256},
    {"TestBytesReceived",   260, VT_UINT32, 4},
    {"TotalBytesReceived",  264, VT_UINT32, 4},
    {"TotalBytesSent",      268, VT_UINT32, 4},
    {"StartTime",           272, VT_STRING, 256},
    {"EndTime",             528, VT_STRING, 256},
};
inline constexpr RowLayout kNode604 = {kNode604Columns, 1040};
static_assert(Fits(kNode604), "node_604Table");

// node_606Table
inline constexpr ColumnDef kNode606Columns[] = {
    {"pPath",                  4, VT_STRING, 256},
    {"ROMTime",              260, VT_STRING, 256},
    {"BOMTime",              516, VT_STRING, 256},
    {"EOMTime",              772, VT_STRING, 256},
    {"TestBytesSent",       1028, VT_UINT32, 4},
    {"TotalBytesReceived",  1032, VT_UINT32, 4},
    {"TotalBytesSent",      1036, VT_UINT32, 4},
    {"TCPOpenRequestTime",  1040, VT_STRING, 256},
    {"TCPOpenResponseTime", 1296, VT_STRING, 256},
};
inline constexpr RowLayout kNode606 = {kNode606Columns, 1808};
static_assert(Fits(kNode606), "node_606Table");

// node_607Table
inline constexpr ColumnDef kNode607Columns[] = {
    {"pPath",                 4, VT_STRING, 256},
    {"TestBytesSent",       260, VT_UINT32, 4},
    {"TotalBytesReceived",  264, VT_UINT32, 4},
    {"TotalBytesSent",      268, VT_UINT32, 4},
    {"StartTime",           272, VT_STRING, 256},
    {"EndTime",             528, VT_STRING, 256},
};
inline constexpr RowLayout kNode607 = {kNode607Columns, 1040};
static_assert(Fits(kNode607), "node_607Table");

// node_traceTable
inline constexpr ColumnDef kNodeTraceColumns[] = {
    {"Host",         276, VT_STRING, 256},
    {"HostAddress",  532, VT_STRING, 256},
    {"ErrorCode",      4, VT_UINT32, 4},
    {"RTTimes",        8, VT_UINT16, 12},
};
inline constexpr RowLayout kNodeTrace = {kNodeTraceColumns, 1044};
static_assert(Fits(kNodeTrace), "node_traceTable");
}  // namespace kobd
