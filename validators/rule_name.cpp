// The names of access rules and parental control rules.
#include "validators/rule_name.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "validators/check.h"

namespace
{
constexpr size_t kNameMax = 128;                    // characters
constexpr std::string_view kRefused = "\\`%'=\"+";  // would need quoting where rules are written
constexpr bool IsPrintable(char c) { return c > ' ' && c <= '~'; }
}  // namespace

int validNameRestriction(const char* name)
{
    const std::string_view text(kobd::OrEmpty(name), strnlen(kobd::OrEmpty(name), kNameMax + 1));
    if (text.empty() || text.size() > kNameMax || !std::all_of(text.begin(), text.end(), IsPrintable)) return 0;
    if (text.find_first_of(kRefused) != text.npos)
    {
        LOG_ALWAYS("validNameRestriction", "---name is not in a-z or A-Z or 0-9---");
        return 0;
    }
    LOG_ALWAYS("validNameRestriction", "---name is in a-z or A-Z or 0-9---");
    return 1;
}
