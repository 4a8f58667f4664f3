// Addresses as text.
#include "validators/address.h"

#include <arpa/inet.h>
#include <strings.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "validators/address_arithmetic.h"
#include "validators/check.h"
#include "validators/parts.h"
#include "validators/regex.h"
#include "validators/texts.h"

using namespace kobd;

namespace
{
constexpr int kAddressParts = 4;
constexpr uint32_t kPartMax = 255;
constexpr uint32_t kLoopback = 127;    // first part, RFC 1122
constexpr uint32_t kClassCLast = 223;  // first part; above are multicast and reserved addresses, RFC 791
constexpr uint32_t kPrefixMax = 32;    // bits
constexpr std::string_view kHexDigits = "0123456789abcdefABCDEF";
constexpr size_t kIpCopy = 20;         // bytes of validIp's working copy
constexpr size_t kIpRangeCopy = 1024;  // bytes of validIpRange's working copy
constexpr size_t kMacLength = 17;      // characters, six pairs and five separators
constexpr int kInputSlots = 2;         // address and prefix
constexpr int kInputSlot = 32;         // bytes

constexpr const char* kInputAddress =
    "^(0|[1-9][0-9]{0,2}).(0|[1-9][0-9]{0,2}).(0|[1-9][0-9]{0,2}).(0|[1-9][0-9]{0,2})$";
constexpr const char* kInputAddressAndPrefix =
    "^(0|[1-9][0-9]{0,2}).(0|[1-9][0-9]{0,2}).(0|[1-9][0-9]{0,2}).(0|[1-9][0-9]{0,2})/(0|[1-9][0-9]{0,1})$";

int LogVerdict(bool valid, const char* function, const char* text, const char* what)
{
    LOG_ALWAYS(function, "[%s] is %s %s\n", text, valid ? "valid" : "invalid", what);
    return Verdict(valid);
}

bool IsIpv4(std::string_view text)
{
    if (text == "255.255.255.255" || std::count(text.begin(), text.end(), '.') != kAddressParts - 1) return false;
    for (int i = 0; i < kAddressParts; ++i)
    {
        const std::string_view part = TakePart(text, '.');
        const auto number = ReadDigits(part);
        if (!number || *number > kPartMax || (part[0] == '0' && part.size() > 1)) return false;
        if (i == 0 && (*number == 0 || *number == kLoopback)) return false;
    }
    return true;
}

// Whether the address lies strictly between the outermost addresses of the classes.
bool InUnicastRange(uint32_t address)
{
    return (address > 0x01000000 && address < 0x7EFFFFFF) || (address > 0x80000000 && address < 0xFFFFFFFF);
}

// Judges by the decimal numbers of the text. An octal or hexadecimal part is read as if it were decimal:
// 0x10 is 0.
bool InsideItsClass(std::string_view text)
{
    std::array<unsigned long, kAddressParts> parts;
    for (unsigned long& part : parts) part = strtoul(TakePart(text, '.').data(), nullptr, 10);
    const unsigned long a = parts[0];
    if (a == 0 || a == kLoopback || a > kClassCLast) return false;
    const auto others_are = [&](unsigned long number)
    { return std::all_of(parts.begin() + 1, parts.end(), [=](unsigned long part) { return part == number; }); };
    const bool lowest = (a == 1 || a == 128 || a == 192) && others_are(0);
    const bool highest = (a == 126 || a == 191 || a == kClassCLast) && others_are(kPartMax);
    return !lowest && !highest;
}

int CheckInputWithPrefix(const char* text)
{
    constexpr const char* kFunction = "validIpInput";
    const Parts<kInputSlots, kInputSlot> parts(text, '/', parseStrBySeparator);
    const char* address = parts.part[0];
    const char* prefix_text = parts.part[1];
    LOG_ALWAYS(kFunction, "midSeparate[0] : %s", address);
    LOG_ALWAYS(kFunction, "midSeparate[1] : %s", prefix_text);
    if (validIp(address) == 0)
    {
        LOG_ALWAYS(kFunction, "not valid separate ip");
        return 0;
    }
    const auto prefix = ReadDigits(prefix_text);
    if (strlen(prefix_text) <= 2 && prefix && *prefix <= kPrefixMax) return 1;
    LOG_ALWAYS(kFunction, "not valid mask");
    return 0;
}
}  // namespace

int validIpv4(const char* text)
{
    text = OrEmpty(text);
    LOG_ALWAYS("validIpv4", "validstart\n");
    return LogVerdict(IsIpv4(text), "validIpv4", text, "IPv4");
}

int validIpv6(const char* text)
{
    text = OrEmpty(text);
    in6_addr address;
    return LogVerdict(inet_pton(AF_INET6, text, &address) == 1, "validIpv6", text, "IPv6");
}

int validIp(const char* text)
{
    constexpr const char* kFunction = "validIp";
    text = OrEmpty(text);
    // One C library's conversion ends at white space and ignores the rest, another's refuses it.
    const bool whole = strlen(text) < kIpCopy && strpbrk(text, " \t\n\v\f\r") == nullptr;
    const in_addr_t address = whole ? inet_addr(text) : INADDR_NONE;
    if (address == INADDR_NONE)
    {
        LOG_ALWAYS(kFunction, "input[%s] not ip addr", text);
        return 0;
    }
    if (!InUnicastRange(ntohl(address)))
    {
        LOG_ALWAYS(kFunction, "[%s] invalid ip", text);
        return 0;
    }
    // The conversion takes shortened forms, such as 10.1, too.
    const std::string_view view = text;
    if (std::count(view.begin(), view.end(), '.') != kAddressParts - 1) return 0;
    return InsideItsClass(view) ? 1 : 0;
}

int validIpInput(const char* text)
{
    if (text == nullptr) return 0;
    if (*text == 0) return 1;
    if (RegexMatches(text, kInputAddress))
    {
        if (validIp(text) == 1) return 1;
        LOG_ALWAYS("validIpInput", "not valid ip:%s", text);
        return 0;
    }
    return RegexMatches(text, kInputAddressAndPrefix) ? CheckInputWithPrefix(text) : 0;
}

int validMask(const char* text)
{
    text = OrEmpty(text);
    const bool ipv4 = validIpv4(text) == kSuccess;
    if (!ipv4 && validIpv6(text) != kSuccess) return kInvalidArgument;
    const uint32_t mask = ipv4 ? static_cast<uint32_t>(iptonum(text)) : 0;
    return LogVerdict(ipv4 && IsContiguous(mask), "validMask", text, "mask");
}

int validMac(const char* text)
{
    text = OrEmpty(text);
    if (strcasecmp(text, "ff:ff:ff:ff:ff:ff") == 0)
    {
        LOG_ALWAYS("validMac", "[%s] is invalid mac\n", text);
        return kInvalidArgument;
    }
    const std::string_view view = text;
    if (view.size() != kMacLength || (view[2] != ':' && view[2] != '-')) return kInvalidArgument;
    for (size_t i = 0; i < view.size(); ++i)
    {
        const bool separator = i % 3 == 2;
        if (separator ? view[i] != view[2] : kHexDigits.find(view[i]) == kHexDigits.npos) return kInvalidArgument;
    }
    return kSuccess;
}

int validIpRange(const char* text)
{
    char address[kIpRangeCopy];
    if (!CopyWhole(OrEmpty(text), address)) return kInvalidArgument;
    char* slash = strchr(address, '/');
    if (slash != nullptr) *slash = 0;
    if (validIpv4(address) != kSuccess && validIpv6(address) != kSuccess) return kInvalidArgument;
    if (slash == nullptr) return kInvalidArgument;
    const auto prefix = ReadDigits(slash + 1);
    return Verdict(prefix && *prefix >= 1 && *prefix <= kPrefixMax);
}

int validAddressExzerobc(const char* text)
{
    return Verdict(validIpv4(text) == kSuccess && isLastByteZeroIP(text) == 0);
}
