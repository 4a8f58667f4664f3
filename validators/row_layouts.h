// Where the checks of rows find their fields. dictionary/catalogue/validated_rows.cpp refuses to compile
// when a place here is not the catalogue's.
#pragma once

#include <cstdint>

namespace kobd
{
// A text field: offset and width in bytes, the width with its zero byte.
struct TextField
{
    uint32_t offset;
    uint32_t width;
};

inline constexpr uint32_t kWidestField = 600;  // NewParentControlRow::kTime

// One struct for each row layout; kSize is the size of the row in bytes.
struct MacFilterRow
{
    static constexpr uint32_t kSize = 64;
    static constexpr TextField kMacList = {4, 20};
    static constexpr TextField kMac = {24, 20};
};

struct PortFilterRow
{
    static constexpr uint32_t kSize = 172;
    static constexpr TextField kProtocol = {4, 45};
    static constexpr TextField kDestIpAddress = {49, 45};
    static constexpr TextField kDestPort = {94, 45};
};

struct IpFilterRow
{
    static constexpr uint32_t kSize = 132;
    static constexpr TextField kDestIpAddress = {4, 64};
    static constexpr TextField kIpList = {68, 32};
};

struct UrlFilterRow
{
    static constexpr uint32_t kSize = 260;
    static constexpr TextField kUrl = {4, 128};
};

struct PortForwardRow
{
    static constexpr uint32_t kSize = 352;
    static constexpr TextField kProtocol = {4, 45};
    static constexpr TextField kDestIpAddress = {49, 45};
    static constexpr TextField kDestPort = {94, 45};
    static constexpr TextField kSrcPort = {139, 45};
    static constexpr TextField kMinPort = {184, 45};
    static constexpr TextField kMaxPort = {229, 45};
};

struct AccessRestrictionRow
{
    static constexpr uint32_t kSize = 804;
    static constexpr TextField kName = {4, 128};
    static constexpr TextField kWeekdays = {132, 128};
    static constexpr TextField kTimeStart = {260, 128};
    static constexpr TextField kTimeStop = {388, 128};
    static constexpr TextField kHost = {644, 128};
};

struct ParentControlRow
{
    static constexpr uint32_t kSize = 1060;
    static constexpr TextField kName = {132, 128};
    static constexpr TextField kWeekdays = {260, 128};
    static constexpr TextField kTimeStart = {388, 128};
    static constexpr TextField kTimeStop = {516, 128};
    static constexpr TextField kHost = {772, 128};
};

struct PortTriggerRow
{
    static constexpr uint32_t kSize = 104;
    static constexpr TextField kOutProtocol = {4, 20};
    static constexpr TextField kOutPort = {24, 20};
    static constexpr TextField kInProtocol = {44, 20};
    static constexpr TextField kInPort = {64, 20};
};

struct NewParentControlRow
{
    static constexpr uint32_t kSize = 912;
    static constexpr TextField kEnable = {4, 128};
    static constexpr TextField kName = {132, 128};
    static constexpr TextField kHost = {260, 18};
    static constexpr TextField kTime = {310, kWidestField};
};

struct BundledAddressRow
{
    static constexpr uint32_t kSize = 64;
    static constexpr uint32_t kIpOffset = 4;   // 4 bytes in network order
    static constexpr uint32_t kMacOffset = 8;  // 6 bytes
};

struct SpeedDialRow
{
    static constexpr uint32_t kSize = 140;
    static constexpr TextField kSpeedDialNumber = {4, 34};
    static constexpr TextField kActureNumber = {38, 34};
    static constexpr TextField kDescription = {72, 34};
};

struct StaticRouteRow
{
    static constexpr uint32_t kSize = 764;
    static constexpr TextField kIp = {4, 64};
    static constexpr TextField kNetmask = {68, 64};
    static constexpr TextField kInterface = {132, 256};
    static constexpr TextField kGateway = {388, 64};
};

struct ApnConfigRow
{
    static constexpr uint32_t kSize = 328;
    static constexpr TextField kApnEnable = {4, 32};
};
}  // namespace kobd
