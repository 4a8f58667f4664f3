// Every message that the daemon takes, sends and answers with: modules, classes, ids, tags and sizes, in
// one place. What an item means to which message stands behind its id as tag:meaning.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kobd
{
// -- sizes, in bytes
inline constexpr size_t kHeaderBytes = 44;  // of MessageHeader on the wire
inline constexpr size_t kMessageMax =
    8192;  // largest message with its header: kernel.msgmax, which the daemon asks for
inline constexpr size_t kPayloadMax = kMessageMax - kHeaderBytes;
inline constexpr size_t kQueueBytes = 16384;  // room of a queue: kernel.msgmnb, which the daemon asks for
inline constexpr size_t kNotifyPayloadMax = 1024 - kHeaderBytes;  // a notification is built in 1024 bytes
inline constexpr size_t kValueBuffer = 2048;                      // an object's value with its zero byte
inline constexpr size_t kItemHeader = 2 + 2;                      // tag, length
inline constexpr size_t kIntItem = kItemHeader + 4;               // with a 32-bit value

// -- modules: addresses on the bus
inline constexpr uint32_t kModuleKobd = 0x5A510001;      // the daemon
inline constexpr uint32_t kModuleNotify = 0x5A510003;    // receives the notifications of changes
inline constexpr uint32_t kModuleServices = 0x5A510006;  // receives the connection events
inline constexpr uint32_t kModuleForward = 0x5A510009;   // receives forwarded network events

enum MessageClass : uint16_t
{
    kClassRequest = 1,
    kClassEvent = 3,
    kClassHostControl = 9,  // for the imitated router itself; a router's bus library knows none
};

// What the handler table is keyed by: the 32-bit word at byte 36 of the header.
constexpr uint32_t MessageCode(uint16_t id, MessageClass message_class) { return (uint32_t{id} << 16) | message_class; }

enum Tag : uint16_t
{
    kTagResult = 0,      // integer: the result code, first item of every reply
    kTagObjectName = 1,  // text
    kTagValue = 2,       // text: an object's value, or the path of a dump file; integer: a count
    kTagTableName = 3,   // text
    kTagRowIndex = 4,    // integer
    kTagColumnName = 5,  // text
    kTagParentPath = 6,  // text
};

// Class 1. Each is answered with its result (tag 0) and, when that is 0, with the items behind "->".
enum RequestId : uint16_t
{
    kReqObjSet = 1,             // 1:object 2:value, ...
    kReqObjGet = 2,             // 1:object, ...  -> 1:object 2:value, ...
    kReqObjSetSilent = 3,       // as 1; nothing is announced and nothing committed
    kReqUpdate = 4,             // no item is looked at; commits
    kReqTableMaxRow = 5,        // 3:table  -> 2:most rows
    kReqTableElementCount = 6,  // 3:table  -> 2:number of columns
    kReqTableAdd = 7,           // 3:table  -> 4:index
    kReqTableDel = 8,           // 3:table 4:index
    kReqTableGet = 9,           // 3:table 4:index, ...  -> 3:table 4:index 5:column 2:value, ...
    kReqTableSet = 10,          // 2:path of a file of 3:table 4:index 5:column 2:value, ...
    kReqTableSetSilent = 11,    // as 10; nothing is announced and nothing committed
    kReqTableDump = 12,         // 3:table, ...  -> 2:path of the dump file
    kReqShow = 13,              // no item is looked at  -> 2:path of the dump file
    kREQSubTableAdd = 15,       // 3:table 6:parent path  -> 4:index
};

// Class 9. Each is answered like a request.
enum HostControlId : uint16_t
{
    kHostState = 1,    // no item is looked at  -> 2:state folder 2:why the last commit failed, or the empty text;
                       // 1 or 3:name of what is not committed, ...
    kHostFactory = 2,  // 1:object  -> 2:its value from the factory

    // The simulator: what a client makes the imitated router show, refuse or delay. 1:object or 3:table, where both may
    // stand; "times" is how often it happens, 0 means always.
    kHostSimSet = 3,           // 1:object 2:value, ...
    kHostSimSetAnnounced = 4,  // as 3; each is announced, and then the end
    kHostSimRowAdd = 5,        // 3:table, 5:column 2:value, ...  -> 4:index
    kHostSimRowSet = 6,        // 3:table 4:index, 5:column 2:value, ...
    kHostSimRowDel = 7,        // 3:table 4:index
    kHostSimFail = 8,          // 1 or 3 (neither: the commit) 2:operation 2:code 2:times
    kHostSimSlow = 9,          // 1 or 3 2:milliseconds 2:times
    kHostSimList = 10,         // 2:how many to leave out  -> 1 or 3 (neither: the router) 2:what 2:how, ...
    kHostSimClear = 11,        // no item is looked at

    kHostTap = 12,  // 2:identifier of a shared memory, into which all messages are copied (host/bus/tap_ring.h)

    // Of the sender's last request: what the router could not set, or the row behind which it could not list the next
    // one, and how many objects or rows the request had set before.
    kHostFailed = 13,  // no item is looked at  -> 1:object, or 3:table 4:index, 2:how many
};

// Class 3, received: network events. Nobody answers them.
enum NetworkEventId : uint16_t
{
    kEvtEthernetUp = 16,
    kEvtEthernetDown = 17,
    kEvtEthernetIPAdd = 18,
    kEvtEthernetIPDel = 19,
    kEvtNetworkUp = 20,
    kEvtNetworkDown = 21,
    kEvtApnChange = 769,
    kEvtApnIPChange = 771,
    kEvtPCscfIPChange = 792,
};

struct NetworkEvent
{
    const char* name;
    NetworkEventId id;
};
inline constexpr NetworkEvent kNetworkEvents[] = {
    {"EvtApnChange", kEvtApnChange},         {"EvtApnIPChange", kEvtApnIPChange},
    {"EvtNetworkUp", kEvtNetworkUp},         {"EvtNetworkDown", kEvtNetworkDown},
    {"EvtPCscfIPChange", kEvtPCscfIPChange}, {"EvtEthernetUp", kEvtEthernetUp},
    {"EvtEthernetDown", kEvtEthernetDown},   {"EvtEthernetIPAdd", kEvtEthernetIPAdd},
    {"EvtEthernetIPDel", kEvtEthernetIPDel},
};

// The text of kEvtApnIPChange is the number of an APN profile, from 1 to this. The daemon reads no text of the others.
inline constexpr int kApnMax = 4;

// Class 3, sent to kModuleNotify.
enum NotifyEvent : uint16_t
{
    kEventObjectChanged = 2,  // 1:object
    kEventTableChanged = 3,   // 3:table 4:index 5:column, ...
    kEventSetFinished = 4,    // nothing
    kEventRowAdded = 799,     // 3:table 4:index
    kEventRowDeleted = 800,   // 3:table 4:index
    kEventSubRowAdded = 801,  // 3:table 4:index 6:parent path
};

// Class 3, sent to kModuleServices: a connection came up or went down.
inline constexpr uint16_t kEventConnectionChanged = 799;
}  // namespace kobd
