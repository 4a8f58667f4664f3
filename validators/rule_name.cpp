// The names of access rules and parental control rules.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "daemon/base/log.h"
#include "validators/access_rules.h"

namespace
{
constexpr size_t kNameMax = 128;                    // characters
constexpr std::string_view kRefused = "\\`%'=\"+";  // would need quoting where rules are written
constexpr bool IsPrintable(char c) { return c > ' ' && c <= '~'; }
}  // namespace

int validNameRestriction(const char* name)
{
    if (name == nullptr) return 0;
    const std::string_view text(name, strnlen(name, kNameMax + 1));
    if (text.empty() || text.size() > kNameMax) return 0;
    if (!std::all_of(text.begin(), text.end(), IsPrintable)) return 0;
    if (text.find_first_of(kRefused) != text.npos)
    {
        LOG_ALWAYS("validNameRestriction", "---name is not in a-z or A-Z or 0-9---");
        return 0;
    }
    LOG_ALWAYS("validNameRestriction", "---name is in a-z or A-Z or 0-9---");
    return 1;
}
