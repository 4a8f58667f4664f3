// Items of messages and change files, as bytes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "daemon/base/tlv.h"

namespace kobd::test
{
// One item, value as it is.
inline std::string RawItem(uint16_t tag, std::string_view value)
{
    const uint16_t length = static_cast<uint16_t>(value.size());
    std::string item(reinterpret_cast<const char*>(&tag), sizeof tag);
    item.append(reinterpret_cast<const char*>(&length), sizeof length);
    return item.append(value);
}

inline std::string TextItem(uint16_t tag, std::string_view text) { return RawItem(tag, std::string(text) + '\0'); }
inline std::string Name(std::string_view name) { return TextItem(kTagObjectName, name); }
inline std::string Pair(std::string_view name, std::string_view value)
{
    return Name(name) + TextItem(kTagValue, value);
}

inline std::string IntItem(uint16_t tag, int32_t value)
{
    return RawItem(tag, {reinterpret_cast<const char*>(&value), sizeof value});
}

// "This row of this table", as requests and change files name it.
inline std::string Row(std::string_view table, int32_t index)
{
    return TextItem(kTagTableName, table) + IntItem(kTagRowIndex, index);
}

inline std::string Column(std::string_view name, std::string_view value)
{
    return TextItem(kTagColumnName, name) + TextItem(kTagValue, value);
}

// Takes a reply apart: its result, and the texts of the items behind it; row indexes in decimal.
inline void TakeReply(std::string_view payload, int* result, std::vector<std::string>* texts)
{
    TlvReader reader(payload);
    while (const auto item = reader.Next())
    {
        if (item->tag == kTagResult)
            *result = item->Int().value_or(-1);
        else if (item->tag == kTagRowIndex)
            texts->push_back(std::to_string(item->Int().value_or(-1)));
        else
            texts->emplace_back(item->Text().value_or("no text"));
    }
}
}  // namespace kobd::test
