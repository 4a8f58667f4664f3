// Text helpers of the host platform.
#include "platform/text.h"

#include <algorithm>
#include <cstring>

namespace
{
constexpr int kMacBytes = 6;
constexpr int kDigits = 2048;  // what isdigit of a common C library answers for a digit

void CopyPart(const char* part, size_t length, char* place, int size)
{
    if (size <= 0) return;
    const size_t kept = std::min(length, static_cast<size_t>(size) - 1);
    memcpy(place, part, kept);
    place[kept] = 0;
}

// The value of a hexadecimal digit, -1 for any other character.
int HexDigit(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}
}  // namespace

int string_is_digits(const char* text)
{
    while (*text >= '0' && *text <= '9') ++text;
    return *text == 0 ? kDigits : 0;
}

int parse_str_by_separator(const char* text, char separator, char* slots, int slot_size, int slot_count)
{
    int count = 0;
    while (*text != 0 && count < slot_count)
    {
        const char* end = strchrnul(text, separator);
        CopyPart(text, static_cast<size_t>(end - text), slots + size_t(count) * size_t(slot_size), slot_size);
        ++count;
        text = *end != 0 ? end + 1 : end;
    }
    return count;
}

int parseStrBySeparator(const char* text, char separator, char* slots, int slot_size, int slot_count)
{
    return parse_str_by_separator(text, separator, slots, slot_size, slot_count);
}

const char* split_str_by_sep(const char* text, const char* separator, char* token, int token_size)
{
    const char* found = strstr(text, separator);
    const size_t length = found != nullptr ? static_cast<size_t>(found - text) : strlen(text);
    CopyPart(text, length, token, token_size);
    return found != nullptr ? found + strlen(separator) : text + length;
}

char* StringUpper(char* text)
{
    for (char* c = text; *c != 0; ++c)
        if (*c >= 'a' && *c <= 'z') *c = static_cast<char>(*c - 'a' + 'A');
    return text;
}

int macStrToBin(const char* text, unsigned char* bytes)
{
    unsigned char read[kMacBytes];
    for (int i = 0; i < kMacBytes; ++i, text += 3)
    {
        const int high = HexDigit(text[0]);
        const int low = high < 0 ? -1 : HexDigit(text[1]);
        if (low < 0) return -1;
        read[i] = static_cast<unsigned char>(high * 16 + low);
        const bool last = i + 1 == kMacBytes;
        if (last ? text[2] != 0 : text[2] != ':' && text[2] != '-') return -1;
    }
    memcpy(bytes, read, sizeof read);
    return 0;
}
