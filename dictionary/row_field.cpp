// Fields of rows as text and back, by value type.
#include "dictionary/row_field.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/text.h"

namespace kobd
{
namespace
{
constexpr int kAccepted = 0;
constexpr int kTooLong = 2;  // "Invalid argument"

template <typename Number>
Number Load(const char* field)
{
    Number number;
    memcpy(&number, field, sizeof number);
    return number;
}

template <typename Number>
void Store(char* field, Number number)
{
    memcpy(field, &number, sizeof number);
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
    const auto* text = reinterpret_cast<const char*>(static_cast<uintptr_t>(Load<uint32_t>(field)));
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

// As atoi where long has 32 bits.
int32_t ReadSigned(const char* text)
{
    return static_cast<int32_t>(std::clamp<long long>(strtoll(text, nullptr, 10), INT32_MIN, INT32_MAX));
}

// As strtoul with base 10 where long has 32 bits: a minus sign negates within 32 bits.
uint32_t ReadUnsigned(const char* text)
{
    const bool negative = text[strspn(text, " \t\n\v\f\r")] == '-';
    errno = 0;
    const unsigned long long number = strtoull(text, nullptr, 10);
    const unsigned long long magnitude = negative ? 0 - number : number;
    return errno == ERANGE || magnitude > UINT32_MAX ? UINT32_MAX : static_cast<uint32_t>(number);
}

int StoreText(char* field, const ColumnDef& column, const char* text)
{
    const size_t length = strlen(text);
    if (length >= column.length) return kTooLong;
    memcpy(field, text, length + 1);
    // A library may leave its text as it is and return the upper-case text in another place.
    if (column.type == VT_STRING_UPPER) memmove(field, StringUpper(field), length + 1);
    return kAccepted;
}
}  // namespace

std::string_view FieldText(const void* row, const ColumnDef& column, std::span<char> buffer)
{
    const char* field = static_cast<const char*>(row) + column.offset;
    switch (column.type)
    {
        case VT_INT32:
        case VT_BOOL:
        case VT_ENUM: return NumberText(Load<int32_t>(field), buffer);
        case VT_INT16: return NumberText(Load<int16_t>(field), buffer);
        case VT_INT8:  // shown unsigned
        case VT_UINT8: return NumberText(Load<uint8_t>(field), buffer);
        case VT_UINT64: return NumberText(Load<uint64_t>(field), buffer);
        case VT_UINT32: return NumberText(Load<uint32_t>(field), buffer);
        case VT_UINT16: return NumberText(Load<uint16_t>(field), buffer);
        case VT_STRING:
        case VT_STRING_2:
        case VT_STRING_3:
        case VT_STRING_4: return StoredText(field, column.length);
        case VT_STRING_PTR: return PointedText(field);
        case VT_STRING_UPPER: return UpperText(field, column.length, buffer);
        case VT_IPV4:
        case VT_IPV4_2: return Ipv4Text(field, buffer);
        case VT_MAC: return MacText(field, buffer);
        default: return {};
    }
}

int32_t RowIndex(const void* row)
{
    int32_t index;
    memcpy(&index, row, sizeof index);
    return index;
}

int TableFieldFromString(void* row, const ColumnDef& column, const char* text)
{
    char* field = static_cast<char*>(row) + column.offset;
    switch (column.type)
    {
        case VT_INT32:
        case VT_BOOL:
        case VT_ENUM: Store(field, ReadSigned(text)); break;
        case VT_INT16: Store(field, static_cast<int16_t>(ReadSigned(text))); break;
        case VT_INT8: Store(field, static_cast<int8_t>(ReadSigned(text))); break;
        case VT_UINT64: Store(field, static_cast<uint64_t>(strtoull(text, nullptr, 0))); break;
        case VT_UINT32: Store(field, ReadUnsigned(text)); break;
        case VT_UINT16: Store(field, static_cast<uint16_t>(ReadUnsigned(text))); break;
        case VT_UINT8: Store(field, static_cast<uint8_t>(ReadUnsigned(text))); break;
        case VT_STRING:
        case VT_STRING_2:
        case VT_STRING_3:
        case VT_STRING_4:
        case VT_STRING_UPPER: return StoreText(field, column, text);
        case VT_IPV4:
        case VT_IPV4_2: Store(field, static_cast<uint32_t>(inet_addr(text))); break;
        case VT_MAC: macStrToBin(text, reinterpret_cast<unsigned char*>(field)); break;
        default: break;  // pointers and types without a field keep what is there
    }
    return kAccepted;
}
}  // namespace kobd
