// The messages between the daemon and other programs, in words.
#pragma once

#include <cstdint>
#include <string>

#include "client/library/kobd_client.h"
#include "client/output/outcome.h"

namespace kobd::client
{
// "announcements", "services", "forwarded events" or "kobd"; the address of another module.
std::string ModuleName(uint32_t module);

// "ReqObjSet", "EvtNetworkUp", "object changed"; "message 77" for one that is not known.
std::string MessageName(const kobd_tapped& message);

// Fails for a pattern that matches no object, table or event and so would never show anything.
Failure CheckPatterns(const Options& options, const Words& patterns);

// Whether one of the patterns matches an object, table or event that the message names; always without patterns.
bool IsAskedFor(const Options& options, const Words& patterns, const kobd_tapped& message);

struct MessageContent
{
    std::string text = {};      // "webHttpPort=8080", "FwUrlFilterTable 3 URL=a.example"
    Json json = Json::array();  // one object a thing: {"name", "value"}, {"table", "index", "columns"}, ...
    bool whole = true;          // false: the message was cut
};

// What the message says behind its result. Passwords, keys and PINs become "(secret)" unless `secrets`.
MessageContent ContentOf(const kobd_tapped& message, bool secrets);

// The result of a reply; -1 where the message has none.
int ResultOf(const kobd_tapped& message);
}  // namespace kobd::client
