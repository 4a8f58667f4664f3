// Messages for handler tests. A message lies in a heap block of exactly its size, so that the
// sanitizers see every byte read beside it.
#pragma once

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "daemon/tlv.h"
#include "platform/message.h"
#include "tests/recording_platform.h"

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

// The payload with one to four random changes: bytes, bits, insertions, cuts. Not for an empty one.
std::string Mutated(std::string payload, std::mt19937& random);

class ExactMessage
{
public:
    explicit ExactMessage(std::string_view payload);
    MessageHeader* Header() { return reinterpret_cast<MessageHeader*>(block_.get()); }

private:
    std::unique_ptr<char[]> block_;
};

struct Answer
{
    int returned = 0;
    int result = -1;
    std::vector<std::string> texts;  // of the items after the result; row indexes in decimal
    size_t payload = 0;              // bytes
};

// Calls the handler and takes the reply apart.
Answer Ask(int (*handler)(MessageHeader*), std::string_view payload);
}  // namespace kobd::test
