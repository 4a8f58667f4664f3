// Ports, protocols, keys, and texts with blanks around them.
#include <algorithm>
#include <climits>
#include <cstring>
#include <string_view>

#include "daemon/base/log.h"
#include "daemon/base/result.h"
#include "platform/text.h"
#include "validators/address.h"
#include "validators/parts.h"
#include "validators/regex.h"
#include "validators/texts.h"

namespace
{
constexpr uint32_t kPortMax = 65535;  // RFC 9293, 16 bits
constexpr int kPortSlots = 2;         // first and last port
constexpr int kPortSlot = 32;         // bytes

bool IsPort(uint32_t number) { return number >= 1 && number <= kPortMax; }

int CheckPortPair(const char* text)
{
    const kobd::Parts<kPortSlots, kPortSlot> ports(text, '-', parseStrBySeparator);
    const uint32_t first = kobd::ReadDigits(ports.part[0]).value_or(0);
    const uint32_t last = kobd::ReadDigits(ports.part[1]).value_or(0);
    if (IsPort(first) && IsPort(last) && first < last) return 1;
    LOG_ALWAYS("validPortFormat", "0:%s   1:%s", ports.part[0], ports.part[1]);
    LOG_ALWAYS("validPortFormat", "not valid separate port range");
    return 0;
}
}  // namespace

int validPortRange(const char* text)
{
    constexpr const char* kFunction = "validPortRange";
    text = kobd::OrEmpty(text);
    if (*text == 0 || !string_is_digits(text))
    {
        LOG_ALWAYS(kFunction, "port(%s) must be digits \n", text);
        return kobd::kInvalidArgument;
    }
    if (*text == '0')
    {
        LOG_ALWAYS(kFunction, "port(%s) first char must not be \"0\" \n", text);
        return kobd::kInvalidArgument;
    }
    const uint32_t port = std::min<uint32_t>(kobd::ReadDigits(text).value_or(INT_MAX), INT_MAX);
    if (IsPort(port)) return kobd::kSuccess;
    LOG_ALWAYS(kFunction, "port(%d) must be 1-65535 \n", static_cast<int>(port));
    return kobd::kInvalidArgument;
}

int validPortFormat(const char* text)
{
    if (kobd::RegexMatches(text, "^(0|[1-9][0-9]{0,4})-(0|[1-9][0-9]{0,4})$")) return CheckPortPair(text);
    if (!kobd::RegexMatches(text, "^(0|[1-9][0-9]{0,4})$")) return 0;
    return IsPort(kobd::ReadDigits(text).value_or(0)) ? 1 : 0;
}

int validProtocol(const char* text) { return kobd::RegexMatches(text, "^(all|tcp|udp|tcpudp|icmp)$") ? 1 : 0; }

int validWifiPassword(const char* text)
{
    if (text == nullptr) return kobd::kInvalidArgument;
    // "0x" would be taken for a key in hexadecimal digits.
    const bool hexadecimal = text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    return hexadecimal || strchr(text, ' ') != nullptr ? kobd::kInvalidArgument : kobd::kSuccess;
}

void Trim(char* text)
{
    if (text == nullptr) return;
    constexpr const char* kBlanks = " \t";
    std::string_view kept = text;
    kept.remove_prefix(strspn(text, kBlanks));
    const size_t last = kept.find_last_not_of(kBlanks);
    kept = kept.substr(0, last == std::string_view::npos ? 0 : last + 1);
    memmove(text, kept.data(), kept.size());
    text[kept.size()] = 0;
}
