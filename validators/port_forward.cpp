// Port forwarding and port redirection, which share one list: two rules may not claim the same
// external port.
#include "validators/port_forward.h"

#include <cstdio>
#include <cstdlib>

#include "platform/lists.h"
#include "validators/address.h"
#include "validators/check.h"
#include "validators/parts.h"
#include "validators/port.h"
#include "validators/rows.h"

using namespace kobd;

namespace
{
using Row = PortForwardRow;

constexpr const char* kFunction = "securityPortForwardListValid";
constexpr int kPortBounds = 2;  // the lower and the upper one

// A port or a range of ports as text, cut at "-".
using PortTexts = Parts<kPortBounds, Row::kSrcPort.width + 1>;

// The external ports that a rule claims, both ends included.
struct PortClaim
{
    long long first;
    long long last;
};

long long Number(const char* text) { return strtoll(text, nullptr, 10); }

// "MinPort" to "MaxPort"; a row without "MaxPort" claims one port. A row without "MinPort" was given by
// "SrcPort" alone and claims that: port 0 would collide with every other such row.
PortClaim ClaimOf(const void* row)
{
    const FieldCopy min_port(row, Row::kMinPort);
    const FieldCopy max_port(row, Row::kMaxPort);
    if (!min_port.Empty())
        return {Number(min_port.Text()), Number(max_port.Empty() ? min_port.Text() : max_port.Text())};
    const PortTexts src_port(FieldCopy(row, Row::kSrcPort).Text(), '-');
    return {Number(src_port.part[0]), Number(src_port.part[src_port.count > 1 ? 1 : 0])};
}

bool Overlap(const PortClaim& a, const PortClaim& b) { return a.first <= b.last && b.first <= a.last; }

// Fills an empty "SrcPort" from "MinPort" and "MaxPort". False, and nothing written, when the two
// together are longer than the field: no such text is a port range.
bool FillSrcPort(void* row)
{
    if (!FieldView(row, Row::kSrcPort).empty()) return true;
    const FieldCopy min_port(row, Row::kMinPort);
    const FieldCopy max_port(row, Row::kMaxPort);
    char built[Row::kSrcPort.width];
    const int length =
        snprintf(built, sizeof built, "%s%s%s", min_port.Text(), max_port.Empty() ? "" : "-", max_port.Text());
    if (length < 0 || static_cast<size_t>(length) >= sizeof built) return false;
    StoreField(row, Row::kSrcPort, built);
    return true;
}

bool IsPortRange(const char* text)
{
    const PortTexts ports(text, '-');
    if (ports.TooMany() || validPortRange(ports.part[0]) != kSuccess) return false;
    if (ports.count < kPortBounds) return true;
    return validPortRange(ports.part[1]) == kSuccess && Number(ports.part[0]) <= Number(ports.part[1]);
}

bool IsSameRule(const void* a, const void* b)
{
    return SameFields(a, b, {Row::kProtocol, Row::kSrcPort, Row::kDestIpAddress, Row::kDestPort});
}
}  // namespace

int securityPortForwardListValid(void* row)
{
    if (row == nullptr) return kInvalidArgument;
    if (!IsForwardProtocol(FieldView(row, Row::kProtocol))) return Refuse(kFunction, "invalid protocol\n");
    if (!FillSrcPort(row) || !IsPortRange(FieldCopy(row, Row::kSrcPort).Text()))
        return Refuse(kFunction, "invalid port range\n");
    if (validIpv4(FieldCopy(row, Row::kDestIpAddress).Text()) != kSuccess) return Refuse(kFunction, "invalid ipv4\n");

    const RowBlock other = NewRowBlock(Row::kSize);
    if (other == nullptr) return Refuse(kFunction, "no enough memory\n");
    const PortClaim claim = ClaimOf(row);
    OtherRows others(nextSecPortForwardList, RowIndex(row), other.get());
    while (others.Read())
    {
        if (IsSameRule(row, other.get())) return Refuse(kFunction, "the entry has been in list\n");
        if (Overlap(claim, ClaimOf(other.get()))) return Refuse(kFunction, "Port overlap\n");
    }
    return others.Result();
}
