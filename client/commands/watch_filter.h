// Which of the messages that arrive kobctl watch shows.
#pragma once

#include <string>

#include "client/arguments/words.h"
#include "client/library/kobd_client.h"
#include "client/output/failure.h"

namespace kobd::client
{
// Fails for a pattern that matches no object, table or event and so would never show anything.
Failure CheckPatterns(const Words& patterns);

// Whether one of the patterns matches an object, table or event that the message names; always without patterns.
bool IsAskedFor(const Words& patterns, uint16_t id, kobd_bytes payload);
}  // namespace kobd::client
