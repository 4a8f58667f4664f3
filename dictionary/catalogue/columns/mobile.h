// APN profiles, cells, messages, speed dial, traffic limits and inform parameters.
#pragma once

#include "dictionary/row_layout.h"

// clang-format off
namespace kobd
{
// ApnConfigTable
inline constexpr ColumnDef kApnConfigColumns[] = {
    {"ApnEnable",          4, VT_STRING,       32},
    {"ProfileName",       36, VT_STRING,       32},
    {"ApnName",           68, VT_STRING,       32},
    {"AuthType",         100, VT_STRING,       32},
    {"Username",         132, VT_STRING,       32},
    {"Password",         164, VT_STRING,       32},
    {"PdnType",          196, VT_STRING,       32},
    {"ManageInterface",  228, VT_STRING,       32},
    {"BandMac",          260, VT_STRING_UPPER, 32},
    {"Vid",              292, VT_STRING,       32},
    {"MTU",              324, VT_INT32,        4},
};
inline constexpr RowLayout kApnConfig = {kApnConfigColumns, 328};
static_assert(Fits(kApnConfig), "ApnConfigTable");

// ApnStatusTable
inline constexpr ColumnDef kApnStatusColumns[] = {
    {"ApnName",       4, VT_STRING, 32},
    {"Status",       36, VT_STRING, 32},
    {"IpAddress",    68, VT_STRING, 128},
    {"SubnetMask",  196, VT_STRING, 128},
};
inline constexpr RowLayout kApnStatus = {kApnStatusColumns, 324};
static_assert(Fits(kApnStatus), "ApnStatusTable");

// NeighborCellTable
inline constexpr ColumnDef kNeighborCellColumns[] = {
    {"NeighborCellEarfcn",    4, VT_STRING, 8},
    {"NeighborCellPci",      12, VT_STRING, 8},
    {"NeighborCellRsrp",     20, VT_STRING, 8},
    {"NeighborCellRsrq",     28, VT_STRING, 8},
    {"NeighborCellRssi",     36, VT_STRING, 8},
    {"NeighborCellSinr",     44, VT_STRING, 8},
};
inline constexpr RowLayout kNeighborCell = {kNeighborCellColumns, 52};
static_assert(Fits(kNeighborCell), "NeighborCellTable");

// SccCellTable
inline constexpr ColumnDef kSccCellColumns[] = {
    {"SccDlEarfcn",       4, VT_STRING, 8},
    {"SccUlEarfcn",      12, VT_STRING, 8},
    {"SccCellID",        20, VT_STRING, 8},
    {"SccBandwidth",     28, VT_STRING, 8},
    {"SccCinr0",         36, VT_STRING, 8},
    {"SccCinr1",         44, VT_STRING, 8},
    {"SccPci",           52, VT_STRING, 8},
    {"SccRsrq",          60, VT_STRING, 8},
    {"SccRsrq0",         68, VT_STRING, 8},
    {"SccRsrq1",         76, VT_STRING, 8},
    {"SccRsrp",          84, VT_STRING, 8},
    {"SccRsrp0",         92, VT_STRING, 8},
    {"SccRsrp1",        100, VT_STRING, 8},
    {"SccRssi",         108, VT_STRING, 8},
    {"SccRssi0",        116, VT_STRING, 8},
    {"SccRssi1",        124, VT_STRING, 8},
    {"SccDlFrequency",  132, VT_STRING, 8},
    {"SccUlFrequency",  140, VT_STRING, 8},
    {"SccDlMcs",        148, VT_STRING, 8},
    {"SccUlMcs",        156, VT_STRING, 8},
    {"SccSinr",         164, VT_STRING, 8},
    {"SccTxpower",      172, VT_STRING, 8},
    {"SccEnbID",        180, VT_STRING, 8},
    {"SccGlobalID",     188, VT_STRING, 8},
    {"SccTac",          196, VT_STRING, 8},
    {"SccMcc",          204, VT_STRING, 8},
    {"SccMnc",          212, VT_STRING, 8},
};
inline constexpr RowLayout kSccCell = {kSccCellColumns, 220};
static_assert(Fits(kSccCell), "SccCellTable");

// SmsTable
inline constexpr ColumnDef kSmsColumns[] = {
    {"Tag",        4, VT_INT32,      4},
    {"Content",    8, VT_STRING_PTR, 4},
};
inline constexpr RowLayout kSms = {kSmsColumns, 12};
static_assert(Fits(kSms), "SmsTable");

// SpeedDialTable
inline constexpr ColumnDef kSpeedDialColumns[] = {
    {"SpeedDialNumber",    4, VT_STRING, 34},
    {"ActureNumber",      38, VT_STRING, 34},
    {"Description",       72, VT_STRING, 34},
};
inline constexpr RowLayout kSpeedDial = {kSpeedDialColumns, 140};
static_assert(Fits(kSpeedDial), "SpeedDialTable");

// QOSIPTable
inline constexpr ColumnDef kQOSIPColumns[] = {
    {"IP",          4, VT_STRING, 32},
    {"UpRate",     36, VT_UINT32, 4},
    {"DownRate",   40, VT_UINT32, 4},
};
inline constexpr RowLayout kQOSIP = {kQOSIPColumns, 76};
static_assert(Fits(kQOSIP), "QOSIPTable");

// QOSPortTable
inline constexpr ColumnDef kQOSPortColumns[] = {
    {"Port",        4, VT_STRING, 32},
    {"UpRate",     36, VT_UINT32, 4},
    {"DownRate",   40, VT_UINT32, 4},
};
inline constexpr RowLayout kQOSPort = {kQOSPortColumns, 76};
static_assert(Fits(kQOSPort), "QOSPortTable");

// InformParameterTable
inline constexpr ColumnDef kInformParameterColumns[] = {
    {"InformParameterEnable",       4, VT_STRING, 255},
    {"InformParameterAlias",      259, VT_STRING, 255},
    {"InformParameterName",       514, VT_STRING, 255},
    {"InformParameterEventList",  769, VT_STRING, 255},
};
inline constexpr RowLayout kInformParameter = {kInformParameterColumns, 1056};
static_assert(Fits(kInformParameter), "InformParameterTable");
}  // namespace kobd
