// How long the daemon waits for the modules that it tells of changes, and which clients its log has named already.
//
// A module whose queue is full gets 100 ms in ten seconds, whatever the number of messages; one whose queue stayed
// full is not waited for until it has read. A reply is never waited for. For the receive thread alone.
#pragma once

#include <cstdint>

namespace kobd::host
{
inline constexpr int kModuleWaitMs = 100;  // for one module within kModuleWindowMs
inline constexpr int64_t kModuleWindowMs = 10000;

// How long the next message to the module may wait for room.
int WaitLeftFor(uint32_t module, int64_t now_ms);

// What became of a message to the module: how long it waited and whether it got through.
void NoteMessageTo(uint32_t module, int64_t now_ms, int waited_ms, bool arrived);

// Remembers that a reply to this queue was dropped. True when the log has to say so: of a client that takes no
// replies it tells once, until one gets through.
bool NoteReplyDropped(int queue);
void NoteReplySent(int queue);
}  // namespace kobd::host
