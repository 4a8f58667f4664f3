// The value type codes: how an object's text is checked and how a column is stored.
#pragma once

#include <cstdint>

namespace kobd
{
enum ValueType : uint32_t
{
    VT_INT32 = 0,
    VT_INT16 = 1,
    VT_INT8 = 2,
    VT_UINT64 = 3,
    VT_UINT32 = 4,
    VT_UINT16 = 5,
    VT_UINT8 = 6,
    VT_BOOL = 7,
    VT_STRING = 8,
    VT_TEXT = 9,
    VT_TEXT_2 = 10,
    VT_STRING_PTR = 11,
    VT_STRING_2 = 12,
    VT_STRING_UPPER = 13,
    VT_IPV4 = 14,
    VT_IPV4_2 = 15,
    VT_OPAQUE = 16,
    VT_OPAQUE_2 = 17,
    VT_STRING_3 = 18,
    VT_STRING_4 = 19,
    VT_ENUM = 20,
    VT_MAC = 21,
};
}  // namespace kobd
