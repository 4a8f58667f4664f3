// Messages for handler tests. A message lies in a heap block of exactly its size, so that the
// sanitizers see every byte read beside it.
#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/message.h"
#include "tests/items.h"
#include "tests/recording_platform.h"

namespace kobd::test
{
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
