#include "web/server/frame.h"

#include <strings.h>
#include <algorithm>
#include <charconv>
#include <optional>

#include "web/server/limits.h"

namespace kobd::web
{
namespace
{
bool SameWord(std::string_view one, std::string_view other)
{
    return one.size() == other.size() && strncasecmp(one.data(), other.data(), one.size()) == 0;
}

std::string_view Trimmed(std::string_view text)
{
    const size_t first = text.find_first_not_of(" \t");
    return first == text.npos ? "" : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::optional<size_t> LengthOf(std::string_view digits)
{
    size_t length = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), length);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    return length;
}

// What the header fields say about the body.
struct Body
{
    std::optional<size_t> length = {};
    int refused = 0;
    bool wants_continue = false;
};

void TakeField(std::string_view line, Body* body)
{
    const size_t colon = std::min(line.find(':'), line.size());
    const std::string_view name = line.substr(0, colon);
    const std::string_view value = Trimmed(line.substr(std::min(colon + 1, line.size())));
    if (SameWord(name, "Transfer-Encoding")) body->refused = 411;
    if (SameWord(name, "Expect")) body->wants_continue = SameWord(value, "100-continue");
    if (!SameWord(name, "Content-Length")) return;
    const bool second = body->length.has_value();
    body->length = LengthOf(value);
    if (second || !body->length) body->refused = 400;
}
}  // namespace

Frame FrameOf(std::string_view arrived)
{
    const size_t blank = arrived.substr(0, kHeadMost).find("\r\n\r\n");
    if (blank == arrived.npos) return {.refused = arrived.size() >= kHeadMost ? 431 : 0};
    Body body;
    for (size_t at = arrived.find("\r\n"); at < blank;)
    {
        const size_t end = arrived.find("\r\n", at + 2);
        TakeField(arrived.substr(at + 2, end - at - 2), &body);
        at = end;
    }
    if (body.refused != 0) return {.refused = body.refused};
    if (body.length.value_or(0) > kBodyMost) return {.refused = 413};
    const size_t size = blank + 4 + body.length.value_or(0);
    return {arrived.size() >= size ? size : 0, 0, body.wants_continue};
}
}  // namespace kobd::web
