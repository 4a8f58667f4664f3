// Ports and protocols.
#include "validators/port.h"

#include <algorithm>
#include <climits>

#include "platform/text.h"
#include "validators/check.h"
#include "validators/parts.h"
#include "validators/regex.h"
#include "validators/texts.h"

using namespace kobd;

namespace
{
constexpr uint32_t kPortMax = 65535;  // RFC 9293, 16 bits
constexpr int kPortSlots = 2;         // first and last port
constexpr int kPortSlot = 32;         // bytes

bool IsPort(uint32_t number) { return number >= 1 && number <= kPortMax; }

int CheckPortPair(const char* text)
{
    const Parts<kPortSlots, kPortSlot> ports(text, '-', parseStrBySeparator);
    const uint32_t first = ReadDigits(ports.part[0]).value_or(0);
    const uint32_t last = ReadDigits(ports.part[1]).value_or(0);
    if (IsPort(first) && IsPort(last) && first < last) return 1;
    LOG_ALWAYS("validPortFormat", "0:%s   1:%s", ports.part[0], ports.part[1]);
    LOG_ALWAYS("validPortFormat", "not valid separate port range");
    return 0;
}
}  // namespace

bool kobd::IsForwardProtocol(std::string_view protocol) { return IsOneOf(protocol, {"tcp", "udp", "tcpudp"}); }

int validPortRange(const char* text)
{
    constexpr const char* kFunction = "validPortRange";
    text = OrEmpty(text);
    if (*text == 0 || string_is_digits(text) == 0)
    {
        LOG_ALWAYS(kFunction, "port(%s) must be digits \n", text);
        return kInvalidArgument;
    }
    if (*text == '0')
    {
        LOG_ALWAYS(kFunction, "port(%s) first char must not be \"0\" \n", text);
        return kInvalidArgument;
    }
    const uint32_t port = std::min<uint32_t>(ReadDigits(text).value_or(INT_MAX), INT_MAX);
    if (IsPort(port)) return kSuccess;
    LOG_ALWAYS(kFunction, "port(%d) must be 1-65535 \n", static_cast<int>(port));
    return kInvalidArgument;
}

int validPortFormat(const char* text)
{
    if (RegexMatches(text, "^(0|[1-9][0-9]{0,4})-(0|[1-9][0-9]{0,4})$")) return CheckPortPair(text);
    if (!RegexMatches(text, "^(0|[1-9][0-9]{0,4})$")) return 0;
    return IsPort(ReadDigits(text).value_or(0)) ? 1 : 0;
}

int validProtocol(const char* text) { return IsOneOf(OrEmpty(text), {"all", "tcp", "udp", "tcpudp", "icmp"}) ? 1 : 0; }
