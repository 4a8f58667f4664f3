// Every message the daemon serves.
#pragma once

#include <array>

#include "platform/message.h"

namespace kobd
{
// 23 rows and the row of zeros that ends them.
extern const std::array<MsgHandler, 24> kHandlers;
}  // namespace kobd
