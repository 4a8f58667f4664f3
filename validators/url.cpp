// URLs of upgrade and management servers.
#include "validators/url.h"

#include <cstring>
#include <string_view>

#include "validators/address.h"
#include "validators/check.h"
#include "validators/regex.h"
#include "validators/texts.h"

using namespace kobd;

namespace
{
constexpr size_t kUrlCopy = 1024;  // bytes

#define FTP_SCHEMES "^((ftp|ftps|http|https)+://)"
#define HTTP_SCHEMES "^((http|https)+://)"
#define OCTET "25[0-5]|2[0-4][0-9]|[0-1]{1}[0-9]{2}|[1-9]{1}[0-9]{1}|"
#define NUMERIC_HOST "((" OCTET "[1-9])([.](" OCTET "[0-9])){3})"
#define NAMED_HOST "(([a-zA-Z0-9][-a-zA-Z0-9]{0,62}[.])*[a-zA-Z0-9][-a-zA-Z0-9]{0,62}[.][a-zA-Z]{2,6})"
#define IPV6_HOST "\\[(([0-9a-fA-F]{0,4})([:]{0,1})){1,8}\\]"
#define PORT_AND_PATH "(:[0-9]{1,5})?((/?)|(/[0-9a-zA-Z_!~*'().;?:@&=+$,%#-]+)+/?)$"

constexpr const char* kFtpNumericHost = FTP_SCHEMES NUMERIC_HOST PORT_AND_PATH;
constexpr const char* kFtpNamedHost = FTP_SCHEMES NAMED_HOST PORT_AND_PATH;
constexpr const char* kHttpNumericHost = HTTP_SCHEMES NUMERIC_HOST PORT_AND_PATH;
constexpr const char* kHttpNamedHost = HTTP_SCHEMES NAMED_HOST PORT_AND_PATH;
constexpr const char* kHttpIpv6Host = HTTP_SCHEMES IPV6_HOST PORT_AND_PATH;

// Whether validIpv4 takes the host of a URL with a numeric host. The host stands behind "//" and ends at
// a path or a port. The pattern alone lets 127.0.0.1 and leading zeros through.
bool NumericHostValid(std::string_view url)
{
    std::string_view host = url.substr(url.find('/') + 2);
    host = host.substr(0, host.find_first_of("/:"));
    char copy[kUrlCopy];
    return CopyWhole(host, copy) && validIpv4(copy) == kSuccess;
}

// Whether validIpv6 takes what stands between the brackets.
bool Ipv6HostValid(std::string_view url)
{
    std::string_view host = url.substr(url.find('[') + 1);
    host = host.substr(0, host.find(']'));
    char copy[kUrlCopy];
    return CopyWhole(host, copy) && validIpv6(copy) == kSuccess;
}

bool HttpMatches(const char* text, const char* pattern)
{
    const Regex regex(pattern);
    if (!regex.Compiled()) LOG_ALWAYS("validHttpUrl", "nomatch\n");
    return regex.Matches(text);
}
}  // namespace

int validFtpUrl(const char* text)
{
    text = OrEmpty(text);
    if (strlen(text) >= kUrlCopy) return kInvalidArgument;
    const bool accepted =
        RegexMatches(text, kFtpNumericHost) ? NumericHostValid(text) : RegexMatches(text, kFtpNamedHost);
    return Verdict(accepted);
}

int validHttpUrl(const char* text)
{
    constexpr const char* kFunction = "validHttpUrl";
    text = OrEmpty(text);
    if (strlen(text) >= kUrlCopy) return kInvalidArgument;
    const bool numeric = HttpMatches(text, kHttpNumericHost);
    if (numeric && !NumericHostValid(text)) return Refuse(kFunction, "error\n");
    if (numeric || HttpMatches(text, kHttpNamedHost))
    {
        LOG_ALWAYS(kFunction, "match\n");
        return kSuccess;
    }
    return Verdict(HttpMatches(text, kHttpIpv6Host) && Ipv6HostValid(text));
}
