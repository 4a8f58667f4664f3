// Wireless networks, radios and mesh.
#pragma once

#include "dictionary/row_layout.h"

// clang-format off
namespace kobd
{
// WiFiSsidTable
inline constexpr ColumnDef kWiFiSsidColumns[] = {
    {"Enable",                    4, VT_INT8,   1},
    {"SsidHide",                  5, VT_INT8,   1},
    {"ApIsolate",                 6, VT_INT8,   1},
    {"ShowPasswd",                7, VT_INT8,   1},
    {"Is4Guest",                  8, VT_INT8,   1},
    {"PasswordLength",           12, VT_INT32,  4},
    {"PasswordIndex",            16, VT_INT32,  4},
    {"MaxClient",                20, VT_INT32,  4},
    {"Ssid",                     24, VT_STRING, 64},
    {"Key",                      88, VT_STRING, 128},
    {"Password1",               216, VT_STRING, 128},
    {"Password2",               344, VT_STRING, 128},
    {"Password3",               472, VT_STRING, 128},
    {"Password4",               600, VT_STRING, 128},
    {"Encryption",              728, VT_STRING, 32},
    {"SsidMac",                 760, VT_MAC,    6},
    {"AllowAccessIntranet",     800, VT_INT32,  4},
    {"OperatingFrequencyBand",  766, VT_STRING, 32},
    {"Sae",                     804, VT_INT8,   4},
    {"Sae_password",            808, VT_STRING, 128},
    {"Ieee80211w",              936, VT_INT8,   4},
    {"ServerAddress",           940, VT_STRING, 128},
    {"ServerPort",             1068, VT_INT32,  4},
    {"ServerSecret",           1072, VT_STRING, 128},
    {"Schedule_enable",        1200, VT_INT32,  4},
    {"Schedule_start_time",    1204, VT_STRING, 32},
    {"Schedule_stop_time",     1236, VT_STRING, 32},
    {"Schedule_weekdays",      1268, VT_STRING, 32},
    {"RtsThreshold",           1300, VT_INT32,  4},
    {"BeaconInterval",         1304, VT_INT32,  4},
    {"Preamble",               1308, VT_INT32,  4},
    {"GuardInterval",          1312, VT_INT32,  4},
    {"Beamforming",            1316, VT_INT32,  4},
    {"Ofdma",                  1320, VT_INT32,  4},
    {"Amsdu",                  1324, VT_INT32,  4},
};
inline constexpr RowLayout kWiFiSsid = {kWiFiSsidColumns, 1328};
static_assert(Fits(kWiFiSsid), "WiFiSsidTable");

// WiFi5GSsidTable
inline constexpr ColumnDef kWiFi5GSsidColumns[] = {
    {"Enable",                    4, VT_INT8,   1},
    {"SsidHide",                  5, VT_INT8,   1},
    {"ApIsolate",                 6, VT_INT8,   1},
    {"ShowPasswd",                7, VT_INT8,   1},
    {"Is4Guest",                  8, VT_INT8,   1},
    {"PasswordLength",           12, VT_INT32,  4},
    {"PasswordIndex",            16, VT_INT32,  4},
    {"MaxClient",                20, VT_INT32,  4},
    {"Ssid",                     24, VT_STRING, 38},
    {"Key",                      62, VT_STRING, 128},
    {"Password1",               190, VT_STRING, 128},
    {"Password2",               318, VT_STRING, 128},
    {"Password3",               446, VT_STRING, 128},
    {"Password4",               574, VT_STRING, 128},
    {"Encryption",              702, VT_STRING, 32},
    {"SsidMac",                 734, VT_MAC,    6},
    {"AllowAccessIntranet",     772, VT_INT32,  4},
    {"OperatingFrequencyBand",  740, VT_STRING, 32},
    {"Sae",                     776, VT_INT8,   4},
    {"Sae_password",            780, VT_STRING, 128},
    {"Ieee80211w",              908, VT_INT8,   4},
    {"ServerAddress",           912, VT_STRING, 128},
    {"ServerPort",             1040, VT_INT32,  4},
    {"ServerSecret",           1044, VT_STRING, 128},
    {"Schedule_enable",        1172, VT_INT32,  4},
    {"Schedule_start_time",    1176, VT_STRING, 32},
    {"Schedule_stop_time",     1208, VT_STRING, 32},
    {"Schedule_weekdays",      1240, VT_STRING, 32},
    {"RtsThreshold",           1272, VT_INT32,  4},
    {"BeaconInterval",         1276, VT_INT32,  4},
    {"Preamble",               1280, VT_INT32,  4},
    {"GuardInterval",          1284, VT_INT32,  4},
    {"Beamforming",            1288, VT_INT32,  4},
    {"Ofdma",                  1292, VT_INT32,  4},
    {"Amsdu",                  1296, VT_INT32,  4},
};
inline constexpr RowLayout kWiFi5GSsid = {kWiFi5GSsidColumns, 1300};
static_assert(Fits(kWiFi5GSsid), "WiFi5GSsidTable");

// WiFiAccessTable
inline constexpr ColumnDef kWiFiAccessColumns[] = {
    {"MAC",                       4, VT_STRING_UPPER, 20},
    {"DATE",                     24, VT_STRING_UPPER, 20},
    {"MaxAllowedAssociations",   44, VT_UINT32,       4},
};
inline constexpr RowLayout kWiFiAccess = {kWiFiAccessColumns, 48};
static_assert(Fits(kWiFiAccess), "WiFiAccessTable");

// WiFiRadioTable
inline constexpr ColumnDef kWiFiRadioColumns[] = {
    {"Name",                                   4, VT_STRING, 64},
    {"Alias",                                 68, VT_STRING, 64},
    {"LastChange",                           132, VT_STRING, 64},
    {"Upstream",                            1220, VT_BOOL,   4},
    {"SupportedFrequencyBands",              196, VT_STRING, 64},
    {"OperatingFrequencyBand",               324, VT_STRING, 64},
    {"MaxBitRate",                           260, VT_STRING, 64},
    {"SupportedStandards",                   388, VT_STRING, 64},
    {"OperatingStandards",                   452, VT_STRING, 64},
    {"PossibleChannels",                     516, VT_STRING, 128},
    {"RegulatoryDomain",                     644, VT_STRING, 64},
    {"AutoChannelSupported",                1224, VT_BOOL,   4},
    {"AutoChannelEnable",                   1228, VT_BOOL,   4},
    {"Channel",                             1236, VT_UINT32, 4},
    {"AutoChannelRefreshPeriod",            1240, VT_INT32,  4},
    {"ChannelLastChange",                   1244, VT_INT32,  4},
    {"ChannelLastSelectionReason",           708, VT_STRING, 64},
    {"MaxSupportedSSIDs",                   1248, VT_INT32,  4},
    {"MaxSupportedAssociations",            1252, VT_INT32,  4},
    {"SupportedOperatingChannelBandwidths",  772, VT_STRING, 64},
    {"ExtensionChannel",                     836, VT_STRING, 64},
    {"TransmitPowerSupported",               900, VT_STRING, 64},
    {"IEEE80211hSupported",                 1232, VT_BOOL,   4},
    {"SupportedDataTransmitRates",          1092, VT_STRING, 128},
    {"OperationalDataTransmitRates",         964, VT_STRING, 128},
};
inline constexpr RowLayout kWiFiRadio = {kWiFiRadioColumns, 1256};
static_assert(Fits(kWiFiRadio), "WiFiRadioTable");

// WiFiSsidTR069Table
inline constexpr ColumnDef kWiFiSsidTR069Columns[] = {
    {"Enable",                             4, VT_INT8,   1},
    {"SsidHide",                           5, VT_INT8,   1},
    {"ApIsolate",                          6, VT_INT8,   1},
    {"ShowPasswd",                         7, VT_INT8,   1},
    {"Is4Guest",                           8, VT_INT8,   1},
    {"PasswordLength",                    12, VT_INT32,  4},
    {"PasswordIndex",                     16, VT_INT32,  4},
    {"MaxClient",                         20, VT_INT32,  4},
    {"Ssid",                              24, VT_STRING, 64},
    {"Key",                               88, VT_STRING, 128},
    {"Password1",                        216, VT_STRING, 128},
    {"Password2",                        344, VT_STRING, 128},
    {"Password3",                        472, VT_STRING, 128},
    {"Password4",                        600, VT_STRING, 128},
    {"Encryption",                       728, VT_STRING, 32},
    {"EncryptionMode",                   760, VT_STRING, 32},
    {"SsidMac",                          889, VT_MAC,    6},
    {"AllowAccessIntranet",             1216, VT_INT32,  4},
    {"OperatingFrequencyBand",           895, VT_STRING, 32},
    {"Status",                           792, VT_STRING, 32},
    {"Alias",                            824, VT_STRING, 65},
    {"LastChange",                      1248, VT_INT32,  4},
    {"LowerLayers",                     1252, VT_STRING, 1024},
    {"Upstream",                        1220, VT_BOOL,   4},
    {"SSIDReference",                    927, VT_STRING, 257},
    {"SSIDAdvertisementEnabled",        1224, VT_BOOL,   4},
    {"WMMCapability",                   1228, VT_BOOL,   4},
    {"UAPSDCapability",                 1232, VT_BOOL,   4},
    {"WMMEnable",                       1236, VT_BOOL,   4},
    {"UAPSDEnable",                     1240, VT_BOOL,   4},
    {"AssociatedDeviceNumberOfEntries", 2276, VT_UINT32, 4},
    {"ModesSupported",                  1184, VT_STRING, 32},
    {"Reset",                           1244, VT_BOOL,   4},
    {"Sae",                             2280, VT_INT8,   4},
    {"Sae_password",                    2284, VT_STRING, 128},
    {"Ieee80211w",                      2412, VT_INT8,   4},
    {"ServerAddress",                   2416, VT_STRING, 128},
    {"ServerPort",                      2544, VT_INT32,  4},
    {"ServerSecret",                    2548, VT_STRING, 128},
};
inline constexpr RowLayout kWiFiSsidTR069 = {kWiFiSsidTR069Columns, 2676};
static_assert(Fits(kWiFiSsidTR069), "WiFiSsidTR069Table");

// EasymeshAPListTable
inline constexpr ColumnDef kEasymeshAPListColumns[] = {
    {"Name",                 4, VT_STRING, 64},
    {"MAC",                 68, VT_STRING, 64},
    {"HostName",           132, VT_STRING, 64},
    {"Location",           196, VT_STRING, 64},
    {"TRLocation",         260, VT_STRING, 64},
    {"Status",            4868, VT_BOOL,   4},
    {"StatusStr",         4740, VT_STRING, 64},
    {"UplinkType",        4804, VT_STRING, 64},
    {"Host",              4872, VT_BOOL,   4},
    {"Signal",             324, VT_STRING, 64},
    {"ClientNum",         4876, VT_INT32,  4},
    {"Remove",            4880, VT_INT32,  4},
    {"DevModel",          4484, VT_STRING, 64},
    {"FwVersion",         4548, VT_STRING, 64},
    {"FwUpgrade",         4884, VT_INT32,  4},
    {"FwUpgradeStatus",   4612, VT_STRING, 64},
    {"FwUpgradeProgress", 4676, VT_STRING, 64},
    {"ClientInfoList",     388, VT_STRING, 4096},
};
inline constexpr RowLayout kEasymeshAPList = {kEasymeshAPListColumns, 4888};
static_assert(Fits(kEasymeshAPList), "EasymeshAPListTable");

// meshSsidTable
inline constexpr ColumnDef kMeshSsidColumns[] = {
    {"SSID",    4, VT_STRING, 64},
    {"Band",   68, VT_STRING, 64},
};
inline constexpr RowLayout kMeshSsid = {kMeshSsidColumns, 132};
static_assert(Fits(kMeshSsid), "meshSsidTable");

// WiFiSiteSuevyTable
inline constexpr ColumnDef kWiFiSiteSuevyColumns[] = {
    {"Ssid",       4, VT_STRING, 64},
    {"Bssid",     68, VT_STRING, 32},
    {"Channel",  100, VT_INT32,  4},
    {"Signal",   104, VT_INT32,  4},
};
inline constexpr RowLayout kWiFiSiteSuevy = {kWiFiSiteSuevyColumns, 108};
static_assert(Fits(kWiFiSiteSuevy), "WiFiSiteSuevyTable");
}  // namespace kobd
