// Fields of rows as text and back, by value type.
#include "dictionary/row_field.h"

#include <arpa/inet.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "dictionary/integer.h"
#include "platform/text.h"

namespace kobd
{
namespace
{
constexpr int kAccepted = 0;
constexpr int kTooLong = 2;  // "Invalid argument"

static_assert(std::endian::native == std::endian::little, "the low bytes of a number are its first ones");

uint64_t LoadNumber(const char* field, uint32_t width)
{
    uint64_t number = 0;
    memcpy(&number, field, width);
    return number;
}

template <typename Number>
std::string_view NumberText(Number number, std::span<char> buffer)
{
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
    return {buffer.data(), static_cast<size_t>(end - buffer.data())};
}

std::string_view StoredText(const char* field, size_t length)
{
    const void* end = memchr(field, 0, length);
    return {field, end == nullptr ? length : static_cast<size_t>(static_cast<const char*>(end) - field)};
}

std::string_view UpperText(const char* field, size_t length, std::span<char> buffer)
{
    const std::string_view text = StoredText(field, std::min(length, buffer.size() - 1));
    memcpy(buffer.data(), text.data(), text.size());
    buffer[text.size()] = 0;
    return StringUpper(buffer.data());
}

// The row holds a 32-bit address on every build; the list that filled it keeps the text there.
std::string_view PointedText(const char* field)
{
    const auto* text = reinterpret_cast<const char*>(static_cast<uintptr_t>(LoadNumber(field, sizeof(uint32_t))));
    return text == nullptr ? std::string_view() : text;
}

std::string_view MacText(const char* field, std::span<char> buffer)
{
    unsigned char mac[kMacBytes];
    memcpy(mac, field, sizeof mac);
    const int length = snprintf(buffer.data(), buffer.size(), "%02X:%02X:%02X:%02X:%02X:%02X", mac[0], mac[1], mac[2],
                                mac[3], mac[4], mac[5]);
    return {buffer.data(), static_cast<size_t>(length)};
}

std::string_view Ipv4Text(const char* field, std::span<char> buffer)
{
    return inet_ntop(AF_INET, field, buffer.data(), static_cast<socklen_t>(buffer.size()));
}

// As strtoul where long has 32 bits, a minus sign negates within 32 bits; 64-bit numbers as strtoull.
uint64_t ReadUnsigned(const char* text, const FieldForm& form)
{
    errno = 0;
    const unsigned long long number = strtoull(text, nullptr, form.Base());
    if (form.width == sizeof number) return number;
    const bool negative = text[strspn(text, " \t\n\v\f\r")] == '-';
    const unsigned long long magnitude = negative ? 0 - number : number;
    return errno == ERANGE || magnitude > UINT32_MAX ? UINT32_MAX : number;
}

// Stores the low bytes of the number.
void StoreNumber(char* field, uint64_t number, uint32_t width) { memcpy(field, &number, width); }

int StoreText(char* field, const FieldForm& form, const char* text)
{
    const size_t length = strlen(text);
    if (length > form.upper) return kTooLong;
    memcpy(field, text, length + 1);
    // A library may leave its text as it is and return the upper-case text in another place.
    if (form.kind == FieldKind::kUpperText) memmove(field, StringUpper(field), length + 1);
    return kAccepted;
}
}  // namespace

std::string_view FieldText(const void* row, const ColumnDef& column, std::span<char> buffer)
{
    const char* field = static_cast<const char*>(row) + column.offset;
    const FieldForm form = FormOf(column);
    switch (form.kind)
    {
        case FieldKind::kSigned:
        {
            const auto number = static_cast<int32_t>(LoadNumber(field, form.width));
            return NumberText(form.width == 2 ? static_cast<int16_t>(number) : number, buffer);
        }
        case FieldKind::kUnsigned: return NumberText(LoadNumber(field, form.width), buffer);
        case FieldKind::kText: return StoredText(field, form.width);
        case FieldKind::kUpperText: return UpperText(field, form.width, buffer);
        case FieldKind::kPointer: return PointedText(field);
        case FieldKind::kIpv4: return Ipv4Text(field, buffer);
        case FieldKind::kMac: return MacText(field, buffer);
        case FieldKind::kNone: break;
    }
    return {};
}

int32_t RowIndex(const void* row)
{
    return static_cast<int32_t>(LoadNumber(static_cast<const char*>(row), kRowIndexBytes));
}

int TableFieldFromString(void* row, const ColumnDef& column, const char* text)
{
    char* field = static_cast<char*>(row) + column.offset;
    const FieldForm form = FormOf(column);
    switch (form.kind)
    {
        case FieldKind::kSigned: StoreNumber(field, static_cast<uint32_t>(ReadInteger(text)), form.width); break;
        case FieldKind::kUnsigned: StoreNumber(field, ReadUnsigned(text, form), form.width); break;
        case FieldKind::kText:
        case FieldKind::kUpperText: return StoreText(field, form, text);
        case FieldKind::kIpv4: StoreNumber(field, inet_addr(text), form.width); break;
        case FieldKind::kMac: macStrToBin(text, reinterpret_cast<unsigned char*>(field)); break;
        case FieldKind::kPointer:
        case FieldKind::kNone: break;  // what is there stays
    }
    return kAccepted;
}

bool IsSameField(const ColumnDef& column, const void* one, const void* other)
{
    return memcmp(static_cast<const char*>(one) + column.offset, static_cast<const char*>(other) + column.offset,
                  FieldWidth(column)) == 0;
}

void CopyField(const ColumnDef& column, const void* from, void* to)
{
    memcpy(static_cast<char*>(to) + column.offset, static_cast<const char*>(from) + column.offset, FieldWidth(column));
}
}  // namespace kobd
