// Bindings of an address of the LAN's pool to a MAC address.
#include "validators/bundled_address.h"

#include <cstring>
#include <optional>

#include "dictionary/row_field.h"
#include "platform/lists.h"
#include "validators/address.h"
#include "validators/address_arithmetic.h"
#include "validators/check.h"
#include "validators/lan.h"
#include "validators/rows.h"

using namespace kobd;

namespace
{
using Row = BundledAddressRow;

constexpr ColumnDef kIp = {"IP", Row::kIpOffset, VT_IPV4, 0};
constexpr ColumnDef kMac = {"MAC", Row::kMacOffset, VT_MAC, 0};
constexpr size_t kFieldText = 18;  // bytes of either field as text, "00:00:00:00:00:00"
constexpr size_t kLastPart = 3;

const unsigned char* IpOf(const void* row) { return static_cast<const unsigned char*>(row) + Row::kIpOffset; }

bool AreFieldsValid(const void* row)
{
    char text[kFieldText];
    if (validIpv4(FieldText(row, kIp, text).data()) != kSuccess) return false;
    return validMac(FieldText(row, kMac, text).data()) == kSuccess;
}

bool SameBytes(const void* a, const void* b, const ColumnDef& column)
{
    const auto field = [&](const void* row) { return static_cast<const char*>(row) + column.offset; };
    return memcmp(field(a), field(b), FieldWidth(column)) == 0;
}

int JudgeOtherBindings(const void* row)
{
    char other[Row::kSize] = {};
    OtherRows others(nextBundledAddrList_net, RowIndex(row), other);
    while (others.Read())
        if (SameBytes(row, other, kIp) || SameBytes(row, other, kMac)) return kInvalidArgument;
    return others.Result();
}

// The LAN's value of that name; nothing when it is no dotted address.
std::optional<DottedParts> LanValue(const char* name) { return ReadDotted(ReadAddress(name).data()); }

// Whether the address lies beside the router's own in the LAN, and inside the pool by its last part.
bool IsInPool(const unsigned char* ip)
{
    const std::optional<DottedParts> lan = LanValue("networkLanSettingIp");
    if (!lan) return false;
    for (size_t i = 0; i < kLastPart; ++i)
        if (ip[i] != (*lan)[i]) return false;
    const std::optional<DottedParts> start = LanValue("networkLanSettingStart");
    const std::optional<DottedParts> end = LanValue("networkLanSettingEnd");
    if (!start || !end) return false;
    const int last = ip[kLastPart];
    return last != (*lan)[kLastPart] && (*start)[kLastPart] <= last && last <= (*end)[kLastPart];
}
}  // namespace

int validBundledAddress(void* row)
{
    if (row == nullptr || !AreFieldsValid(row)) return kInvalidArgument;
    if (const int code = JudgeOtherBindings(row)) return code;
    return Verdict(IsInPool(IpOf(row)));
}
