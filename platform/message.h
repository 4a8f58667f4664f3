// The message bus: header layout, handler table row and the calls of the bus library.
// Included by everybody who sends or receives; the library behind it is chosen at link time.
//
//   offset  0        8      12              36     38   40     42      44
//           +--------+------+---------------+------+----+------+-------+---------------+
//           | bus    | dest | bus           | class| id | bus  | length| items ...     |
//           | 8 bytes| u32  | 24 bytes      | u16  | u16| u16  | u16   | length bytes  |
//           +--------+------+---------------+------+----+------+-------+---------------+
//
// One item, packed, at any alignment:
//
//           | tag u16 | length u16 | value, length bytes |
//
// Integers are little-endian on the router and in the byte order of the host elsewhere. Modules, classes,
// ids, tags and sizes stand in daemon/base/messages.h.
#pragma once

#include <cstddef>
#include <cstdint>

struct MessageHeader
{
    uint8_t bus_start[8];
    uint32_t destination;
    uint8_t bus_middle[24];
    uint16_t message_class;
    uint16_t id;
    uint16_t bus_end;
    uint16_t length;  // bytes of items that follow the header
};
static_assert(sizeof(MessageHeader) == 44, "the header is 44 bytes on the wire");
static_assert(offsetof(MessageHeader, destination) == 8, "destination at 8");
static_assert(offsetof(MessageHeader, message_class) == 36, "class at 36");
static_assert(offsetof(MessageHeader, length) == 42, "length at 42");

struct MsgHandler
{
    const char* name;
    uint32_t code;  // (id << 16) | class
    int (*handler)(MessageHeader* message);
};

extern "C"
{
    // Remembers the handler table, ended by a row of zeros. The table must outlive the bus.
    void MessageProccessRegister(const MsgHandler* table);

    // Joins the bus as `module` and starts receiving on the library's own thread; handlers run
    // there one at a time. 0, or 9 when the bus cannot be joined. On the host it returns before it has
    // joined: while another process has the module, or the system has no queue or semaphore left,
    // a thread waits for them; 9 there means that this process has joined before.
    int MessageInitialize(uint32_t module);

    // Sends to the module in the destination field. 0; 3 when nobody has that module, or its
    // queue is another user's; 5 when its queue stayed full.
    int MessageSend(MessageHeader* message);

    // Sends the reply to the request whose header it carries, without waiting. 0, or 5 when it
    // cannot be delivered.
    int MessageSendReply(MessageHeader* message);

    // Stops receiving, waits for the handler in progress, leaves the bus.
    void MessageDestroy();

    // Writes an integer item at `place` (8 bytes of room needed); returns 8.
    int TlvPushIntToBuf(void* place, uint16_t tag, int32_t value);

    // Writes a text item at `place` (4 + strlen + 1 bytes of room needed); returns the bytes written.
    int TlvPushStringToBuf(void* place, uint16_t tag, const char* text);
}
