// Domain names.
#include "validators/domain.h"

#include <string_view>

#include "validators/check.h"
#include "validators/regex.h"
#include "validators/texts.h"

using namespace kobd;

namespace
{
constexpr size_t kDomainCopy = 1024;  // bytes

constexpr const char* kDomain = "^([a-zA-Z0-9][-a-zA-Z0-9]{0,62}[.])*[a-zA-Z0-9][-a-zA-Z0-9]{0,62}[.][a-zA-Z]{2,6}$";

// The dots outside brackets stand for any character.
constexpr const char* kUrlDomain =
    "^((https|http|ftp|rtsp|mms)?://)?([0-9a-zA-Z_!~*'()-]+.)*([0-9a-zA-Z][0-9a-z-]{0,61})*.[a-zA-Z]{2,6}$";

// The last part between dots that is not empty; the whole text when it has no dot.
std::string_view LastLabel(std::string_view text, const char* function)
{
    if (text.find('.') == std::string_view::npos) return text;
    std::string_view last;
    std::string_view next = TakeWord(text, '.');
    while (!next.empty())
    {
        last = next;
        next = TakeWord(text, '.');
        const std::string_view shown = next.empty() ? "(null)" : next;
        LOG_ALWAYS(function, "last p string:%.*s", static_cast<int>(shown.size()), shown.data());
    }
    return last;
}

int CheckName(const char* text, const char* pattern, const char* function)
{
    const std::string_view view = OrEmpty(text);
    if (view.empty() || view.size() >= kDomainCopy) return kInvalidArgument;
    // A top-level domain has no digits; this is what tells a name from an address.
    if (LastLabel(view, function).find_first_of("0123456789") != std::string_view::npos) return kInvalidArgument;
    return MatchAndPrint(text, pattern);
}
}  // namespace

int validDomain(const char* text) { return CheckName(text, kDomain, "validDomain"); }

int checkDomain(const char* text) { return CheckName(text, kUrlDomain, "checkDomain"); }
