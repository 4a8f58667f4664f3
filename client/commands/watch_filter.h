// Which of the messages that arrive kobctl watch is asked to show.
#pragma once

#include <string>

#include "client/commands/commands.h"
#include "client/library/kobd_client.h"

namespace kobd::client
{
// What is wrong with the patterns: one that matches no object, table or event would never show
// anything. The empty text when nothing is.
std::string WrongPattern(const Words& patterns);

// Whether one of the patterns matches an object, table or event that the message names; without
// patterns every message is asked for.
bool IsAskedFor(const Words& patterns, uint16_t id, kobd_bytes payload);
}  // namespace kobd::client
