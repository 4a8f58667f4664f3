/* Client library of kobd: requests with a deadline, decoded replies, and watching what is announced.
 *
 *     kobd_client* client;
 *     char port[KOBD_VALUE_MAX];
 *     int code = kobd_client_open(&client);
 *     if (code == 0) {
 *         code = kobd_get(client, "webHttpPort", port, sizeof port);
 *         if (code == 0) printf("%s\n", port);
 *         else fprintf(stderr, "%s\n", kobd_result_text(code));
 *         kobd_client_close(client);
 *     }
 *
 * Every function that returns int gives 0 or a result code; kobd_result_text has its text. A client
 * is used by one thread at a time; different clients are independent. After a fork the child opens
 * clients and watches of its own; closing the parent's there only frees their memory. Texts are
 * zero-terminated bytes, usually UTF-8. Nothing blocks longer than its deadline. */
/* Laid out as C, for those who read it. */
/* clang-format off */
#ifndef KOBD_CLIENT_H
#define KOBD_CLIENT_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Result codes that the library itself gives; others come from the daemon. */
#define KOBD_SUCCESS 0
#define KOBD_NOT_FOUND 1          /* there is no such object or table */
#define KOBD_INVALID 2            /* refused */
#define KOBD_NOT_RUNNING 3        /* nobody has the daemon's module */
#define KOBD_SYSTEM_ERROR 4       /* the reply is none: no result, or items that cannot be read */
#define KOBD_SEND_FAILED 5        /* the daemon's queue stayed full until the deadline, or takes no such size */
#define KOBD_NO_MEMORY 7
#define KOBD_TIMEOUT 8            /* no reply, or nothing to see, before the deadline */
#define KOBD_INITIALIZE_FAILED 9  /* no queue of our own, or the module is taken */
#define KOBD_BUFFER_LIMIT 11      /* the request, the reply or the caller's buffer is too small */

#define KOBD_VALUE_MAX 2048   /* bytes of the longest object value with its zero byte */
#define KOBD_PAYLOAD_MAX 8148 /* bytes of the largest payload: a message of 8192 less its header of 44 */

/* The text of a result code; never NULL. */
const char* kobd_result_text(int code);

/* -- items ------------------------------------------------------------------------------------ */

enum kobd_tag {
    KOBD_TAG_RESULT = 0,      /* integer */
    KOBD_TAG_OBJECT_NAME = 1, /* text */
    KOBD_TAG_VALUE = 2,       /* text, or a count in some replies */
    KOBD_TAG_TABLE_NAME = 3,  /* text */
    KOBD_TAG_ROW_INDEX = 4,   /* integer */
    KOBD_TAG_COLUMN_NAME = 5, /* text */
    KOBD_TAG_PARENT_PATH = 6  /* text */
};

typedef struct kobd_item {
    uint16_t tag;
    uint16_t length;   /* bytes of the value */
    const void* value; /* not aligned */
    const char* text;  /* the value as text, NULL when no zero byte ends it */
    int32_t number;    /* the value as integer, 0 when its length is not 4 */
} kobd_item;

/* Items one after the other: the payload of a request, or what a change file holds. add functions:
 * 0; 7 without memory; 11 when the text is longer than an item can be (65534 bytes). A request is
 * limited to KOBD_PAYLOAD_MAX bytes, a file is not. */
typedef struct kobd_items kobd_items;
kobd_items* kobd_items_new(void); /* NULL without memory; free with kobd_items_free */
void kobd_items_free(kobd_items* items);
int kobd_items_add_text(kobd_items* items, uint16_t tag, const char* text);
int kobd_items_add_number(kobd_items* items, uint16_t tag, int32_t number);

/* The bytes of the items, size of them; valid until the next add or free. */
const void* kobd_items_bytes(const kobd_items* items, size_t* size);

/* Bytes that hold items, as a dump file does or a message to a watch; set both fields to begin. */
typedef struct kobd_bytes {
    const void* next;
    size_t left;
} kobd_bytes;

/* 1 and the next item; 0 at the end; -1 at an item that runs past the end, and again from then on.
 * The item points into the bytes. */
int kobd_bytes_next(kobd_bytes* bytes, kobd_item* item);

/* -- requests --------------------------------------------------------------------------------- */

enum kobd_request {
    KOBD_SET = 1,
    KOBD_GET = 2,
    KOBD_SET_SILENT = 3,
    KOBD_UPDATE = 4,
    KOBD_TABLE_MAX_ROW = 5,
    KOBD_TABLE_ELEMENT_COUNT = 6,
    KOBD_TABLE_ADD = 7,
    KOBD_TABLE_DEL = 8,
    KOBD_TABLE_GET = 9,
    KOBD_TABLE_SET = 10,
    KOBD_TABLE_SET_SILENT = 11,
    KOBD_TABLE_DUMP = 12,
    KOBD_SHOW = 13,
    KOBD_SUB_TABLE_ADD = 15
};

typedef struct kobd_client kobd_client;

/* Opens a connection; close it with kobd_client_close. A process may have 512 of them. Deadline of
 * every call: 5000 ms at first. A child of the process opens its own; calls on its parent's give 9. */
int kobd_client_open(kobd_client** client);
void kobd_client_close(kobd_client* client);
void kobd_client_set_timeout(kobd_client* client, int milliseconds);

/* One request and its reply. items may be NULL. Returns 0 when the daemon answered with result 0;
 * otherwise the daemon's result, or without an answer 3, 4, 5 or 8, or 11 when the items do not fit
 * one message and nothing was sent. The items of the reply, result item left out, stay readable
 * until the next call on this client. */
int kobd_call(kobd_client* client, enum kobd_request request, const kobd_items* items);

/* Questions that only the imitated router answers; on a router no reply comes in time. */
enum kobd_host_control {
    KOBD_HOST_STATE = 1,  /* no item; the reply has two values: the state folder, and why the last commit could
                             not be saved, empty when everything is */
    KOBD_HOST_FACTORY = 2 /* an object name; the reply has its value from the factory */
};

/* As kobd_call. */
int kobd_host_call(kobd_client* client, enum kobd_host_control control, const kobd_items* items);

/* 1 when the last call was answered, whatever the result; 0 when its code came from the library. */
int kobd_answered(const kobd_client* client);

/* Items of the last reply: 1 and the next one, 0 at the end. kobd_reply_rewind begins again. */
int kobd_reply_next(kobd_client* client, kobd_item* item);
void kobd_reply_rewind(kobd_client* client);

/* The value of one object into value[size]. 1 for a name that is unknown or cannot be read: the
 * daemon leaves it out of its reply and says why in its log alone. 11 when the value does not fit. */
int kobd_get(kobd_client* client, const char* name, char* value, size_t size);

/* Sets count objects in one request: all are checked before the first is changed. */
int kobd_set(kobd_client* client, const char* const* names, const char* const* values, size_t count);

/* -- watching --------------------------------------------------------------------------------- */

#define KOBD_MODULE_DAEMON 0x5A510001u   /* kobd itself */
#define KOBD_MODULE_NOTIFY 0x5A510003u   /* is told of changes */
#define KOBD_MODULE_SERVICES 0x5A510006u /* is told of connection events */
#define KOBD_MODULE_FORWARD 0x5A510009u  /* gets forwarded events */

typedef struct kobd_watch kobd_watch;

/* Joins the bus as module; 9 when another program has it, or the system has no queue to give. Close with
 * kobd_watch_close. */
int kobd_watch_open(kobd_watch** watch, uint32_t module);
void kobd_watch_close(kobd_watch* watch);

/* Waits for the next message, milliseconds at most (negative: without end): 0 and its id; 8 nothing
 * came in time; 3 after kobd_watch_stop; 9 the queue is gone. */
int kobd_watch_next(kobd_watch* watch, int milliseconds, uint16_t* id);

/* Items of the message that the last kobd_watch_next gave: 1 and the next one, 0 at the end. */
int kobd_watch_item(kobd_watch* watch, kobd_item* item);

/* The whole payload of that message, for events whose payload is a text without items. */
kobd_bytes kobd_watch_payload(const kobd_watch* watch);

/* Ends a kobd_watch_next in progress and all later ones; from any thread or signal handler. */
void kobd_watch_stop(kobd_watch* watch);

/* Sends an event (class 3) with a payload of length bytes to module; nobody answers it. 0; 3 nobody
 * has the module; 5 its queue stayed full; 11 the payload is longer than KOBD_PAYLOAD_MAX. */
int kobd_send_event(kobd_client* client, uint32_t module, uint16_t id, const void* payload, size_t length);

/* -- looking ---------------------------------------------------------------------------------- */

typedef struct kobd_module {
    int claimed;       /* 1 while a living process has the module */
    int has_queue;     /* 1 when it has a queue */
    uint64_t messages; /* waiting in the queue */
    uint64_t capacity; /* bytes the queue holds */
    uint32_t owner;    /* user id of the queue's owner */
} kobd_module;

/* Looks at a module without joining it. 0, also when it has no queue; else an errno. */
int kobd_module_look(uint32_t module, kobd_module* look);

#ifdef __cplusplus
}
#endif

#endif
