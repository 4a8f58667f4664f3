// Management agent: UPnP devices and services found.
#pragma once

#include "dictionary/row_layout.h"

// clang-format off
namespace kobd
{
// node_646Table
inline constexpr ColumnDef kNode646Columns[] = {
    {"pPath",         4, VT_STRING, 256},
    {"Status",      260, VT_STRING, 256},
    {"UUID",        516, VT_STRING, 256},
    {"USN",         772, VT_STRING, 256},
    {"LeaseTime",  1028, VT_UINT32, 4},
    {"Location",   1032, VT_STRING, 256},
    {"Server",     1288, VT_STRING, 256},
    {"Host",       1544, VT_STRING, 256},
    {"LastUpdate", 1800, VT_STRING, 256},
};
inline constexpr RowLayout kNode646 = {kNode646Columns, 2312};
static_assert(Fits(kNode646), "node_646Table");

// node_647Table
inline constexpr ColumnDef kNode647Columns[] = {
    {"pPath",         4, VT_STRING, 256},
    {"Status",      260, VT_STRING, 256},
    {"UUID",        516, VT_STRING, 256},
    {"USN",         772, VT_STRING, 256},
    {"LeaseTime",  1028, VT_UINT32, 4},
    {"Location",   1032, VT_STRING, 256},
    {"Server",     1288, VT_STRING, 256},
    {"Host",       1544, VT_STRING, 256},
    {"LastUpdate", 1800, VT_STRING, 256},
};
inline constexpr RowLayout kNode647 = {kNode647Columns, 2312};
static_assert(Fits(kNode647), "node_647Table");

// node_648Table
inline constexpr ColumnDef kNode648Columns[] = {
    {"pPath",           4, VT_STRING, 256},
    {"Status",        260, VT_STRING, 256},
    {"USN",           516, VT_STRING, 256},
    {"LeaseTime",     772, VT_UINT32, 4},
    {"Location",      776, VT_STRING, 256},
    {"Server",       1032, VT_STRING, 256},
    {"Host",         1288, VT_STRING, 256},
    {"LastUpdate",   1544, VT_STRING, 256},
    {"ParentDevice", 1800, VT_STRING, 256},
};
inline constexpr RowLayout kNode648 = {kNode648Columns, 2312};
static_assert(Fits(kNode648), "node_648Table");
}  // namespace kobd
