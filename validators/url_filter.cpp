// Filters by URL: what the firewall can match in a request for a web page.
#include "validators/url_filter.h"

#include <cstring>

#include "validators/check.h"
#include "validators/regex.h"
#include "validators/rows.h"

using namespace kobd;

namespace
{
constexpr const char* kFunction = "validUrlFilter";

// A backslash inside brackets is an ordinary character (POSIX), so that \-\ is the range from one
// backslash to the next. The hyphen is therefore not among the characters of a host or a path; a URL
// with a backslash has been refused before.
constexpr char kBackslash[] = "\\\\";
constexpr char kHostAndPath[] = "^[A-Za-z0-9\\.\\-\\?&_=]+(:[0-9]{1,4}/)?([A-Za-z0-9\\.\\-\\?&_=]+/?)*$";
constexpr char kAddress[] = "^([0-9]{1,3})\\.([0-9]{1,3})\\.([0-9]{1,3})\\.([0-9]{1,3})$";
constexpr char kScheme[] = "^(http|news|nntp|gopher|wais|mailto|file|prospero|https|ftp|telnet)://";
constexpr char kSlashes[] = "/{2,}";
// Its dots stand for any character.
constexpr char kAddressFirst[] = "^([0-9]{1,3}).([0-9]{1,3}).([0-9]{1,3}).([0-9]{1,3}).*$";

bool Matches(const char* text, const char* pattern)
{
    int start;
    int end;
    return checkRegex(text, pattern, &start, &end) == 0;
}

int JudgeWithoutScheme(const char* url)
{
    if (!Matches(url, kHostAndPath)) return Refuse(kFunction, "invalid symbol");
    if (Matches(url, kAddress)) return Refuse(kFunction, "cannot input ip");
    return kSuccess;
}

int JudgeWithScheme(const char* url)
{
    int start;
    int end;
    if (checkRegex(url, kScheme, &start, &end) != 0) return kInvalidArgument;
    const char* rest = url + (end - start);
    LOG_ALWAYS(kFunction, "------URL:%s", rest);
    if (Matches(rest, kSlashes)) return Refuse(kFunction, "------more than 1 slash");
    if (!Matches(rest, kHostAndPath)) return Refuse(kFunction, "invalid symbol");
    if (Matches(rest, kAddressFirst)) return Refuse(kFunction, "cannot input ip");
    return kSuccess;
}
}  // namespace

int validUrlFilter(void* row)
{
    if (row == nullptr) return kInvalidArgument;
    const FieldCopy url(row, UrlFilterRow::kUrl);
    if (Matches(url.Text(), kBackslash)) return kInvalidArgument;
    return strstr(url.Text(), "://") == nullptr ? JudgeWithoutScheme(url.Text()) : JudgeWithScheme(url.Text());
}
