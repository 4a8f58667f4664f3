/* Client library of kobd: requests with a deadline, decoded replies, why a request was refused, the dictionary, and
 * watching what the daemon announces.
 *
 *     kobd_client* client;
 *     char port[KOBD_VALUE_MAX];
 *     int code = kobd_client_open(&client);
 *     if (code == 0) {
 *         code = kobd_get(client, "webHttpPort", port, sizeof port);
 *         if (code == 0) printf("%s\n", port);
 *         else fprintf(stderr, "%s\n", kobd_explain(client)->text);
 *         kobd_client_close(client);
 *     }
 *
 * A function that returns int returns 0 or a result code, unless its comment says otherwise;
 * kobd_result_text has the text of a code. No call blocks longer than its deadline.
 *
 * A pointer may be NULL only where the comment says so. Texts end with a zero byte and are usually
 * UTF-8. Sizes are in bytes, deadlines in milliseconds.
 *
 * Use a client or a watch in one thread at a time; different ones are independent. After a fork the
 * child opens its own: calls on its parent's return 9, and closing the parent's frees only memory. */
/* Laid out as C, for those who read it. */
/* clang-format off */
#ifndef KOBD_CLIENT_H
#define KOBD_CLIENT_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The version of this header, and of the library that the program runs with. What worked with an earlier version of the
 * same major number works with a later one; a struct that the library owns may get further fields at its end. */
#define KOBD_CLIENT_VERSION "0.2"
#define KOBD_CLIENT_VERSION_MAJOR 0
#define KOBD_CLIENT_VERSION_MINOR 2
const char* kobd_client_version(void); /* "0.2" */

/* Result codes that the library itself returns. The daemon returns these and others. */
#define KOBD_SUCCESS 0
#define KOBD_NOT_FOUND 1          /* there is no such object or table */
#define KOBD_INVALID 2            /* the daemon refused the value, or could not read the request */
#define KOBD_NOT_RUNNING 3        /* no program has joined the bus as that module */
#define KOBD_SYSTEM_ERROR 4       /* the reply cannot be read: it has no result, or a broken item */
#define KOBD_SEND_FAILED 5        /* the module's queue stayed full, or takes no message of that size */
#define KOBD_NO_MEMORY 7
#define KOBD_TIMEOUT 8            /* no message arrived before the deadline; a request may still be served */
#define KOBD_INITIALIZE_FAILED 9  /* the system has no queue for us, or another program has the module */
#define KOBD_BUFFER_LIMIT 11      /* the payload is too long for a message, or the value for its buffer */

#define KOBD_VALUE_MAX 2048   /* bytes of the longest object value with its zero byte */
#define KOBD_PAYLOAD_MAX 8148 /* bytes of the longest payload: a message of 8192 less its header of 44 */

/* The text of a result code. A constant; never NULL. */
const char* kobd_result_text(int code);

/* -- items ------------------------------------------------------------------------------------ */

enum kobd_tag {
    KOBD_TAG_RESULT = 0,      /* integer */
    KOBD_TAG_OBJECT_NAME = 1, /* text */
    KOBD_TAG_VALUE = 2,       /* text; an integer where a reply holds a count */
    KOBD_TAG_TABLE_NAME = 3,  /* text */
    KOBD_TAG_ROW_INDEX = 4,   /* integer */
    KOBD_TAG_COLUMN_NAME = 5, /* text */
    KOBD_TAG_PARENT_PATH = 6  /* text */
};

typedef struct kobd_item {
    uint16_t tag;
    uint16_t length;   /* bytes of the value, for a text with its zero byte */
    const void* value; /* not aligned */
    const char* text;  /* the value as text; NULL when no zero byte ends it */
    int32_t number;    /* the value as integer; 0 when its length is not 4 */
} kobd_item;

/* A list of items to send, or to write into a change file. The add functions copy what they are
 * given and return 0; 7 without memory; 11 when the text is longer than 65534 bytes, and nothing
 * is added then. The list itself has no limit; a request takes KOBD_PAYLOAD_MAX bytes of it. */
typedef struct kobd_items kobd_items;
kobd_items* kobd_items_new(void); /* empty; NULL without memory; free it with kobd_items_free */
void kobd_items_free(kobd_items* items); /* items may be NULL */
int kobd_items_add_text(kobd_items* items, uint16_t tag, const char* text);
int kobd_items_add_number(kobd_items* items, uint16_t tag, int32_t number);

/* The list as bytes, and how many in *size. They belong to the list and are valid until the next add
 * or free. NULL with size 0 for a list without items. */
const void* kobd_items_bytes(const kobd_items* items, size_t* size);

/* Bytes that hold items, of a message or of a dump file. Set both fields to begin reading. */
typedef struct kobd_bytes {
    const void* next; /* the first byte not read yet */
    size_t left;      /* bytes from there on */
} kobd_bytes;

/* Reads the next item and moves behind it. Returns 1; 0 at the end; -1 at an item that runs past the
 * end, and again from then on. The item points into the bytes, and they must outlive it. */
int kobd_bytes_next(kobd_bytes* bytes, kobd_item* item);

/* -- requests --------------------------------------------------------------------------------- */

/* What to send, and what the reply holds behind its result. kobd-protocol(5) tells more. */
enum kobd_request {
    KOBD_SET = 1,                 /* name and value, for each object */
    KOBD_GET = 2,                 /* name of each object; reply: name and value of each that can be read */
    KOBD_SET_SILENT = 3,          /* as KOBD_SET, neither announced nor made durable */
    KOBD_UPDATE = 4,              /* nothing; makes durable what was set silently */
    KOBD_TABLE_MAX_ROW = 5,       /* table; reply: value, the most rows that it may hold */
    KOBD_TABLE_ELEMENT_COUNT = 6, /* table; reply: value, the number of its columns */
    KOBD_TABLE_ADD = 7,           /* table; reply: index of the new row */
    KOBD_TABLE_DEL = 8,           /* table and index */
    KOBD_TABLE_GET = 9,           /* table and index, for each row; reply: also its columns and values */
    KOBD_TABLE_SET = 10,          /* value: the path of a change file */
    KOBD_TABLE_SET_SILENT = 11,   /* as KOBD_TABLE_SET, neither announced nor made durable */
    KOBD_TABLE_DUMP = 12,         /* each table; reply: value, the path of a dump file, which you remove */
    KOBD_SHOW = 13,               /* nothing; reply: value, the path of a dump file, which you remove */
    KOBD_SUB_TABLE_ADD = 15       /* table and parent path; reply: index of the new row */
};

typedef struct kobd_client kobd_client;

/* Opens a connection; free it with kobd_client_close. A process may have 512 of them. 0; 7; 9 when
 * the system has no message queue to give. *client is NULL after a failure. */
int kobd_client_open(kobd_client** client);
void kobd_client_close(kobd_client* client); /* client may be NULL */

/* How long each later call on this client may take. Until this is called it is 5000, and 75000 for a request that names
 * a cellular table, for which the daemon runs commands for up to 60 seconds. Less than 0 is 0. */
void kobd_client_set_timeout(kobd_client* client, int milliseconds);

/* Sends a request and waits for its reply. items may be NULL: none. Returns the daemon's result; or,
 * when kobd_answered then says 0, the library's: 3, 4, 5, 8 or 9, or 11 when the items do not fit one
 * message and nothing was sent. After 8 the daemon may have served the request, or serve it later.
 * The items of the reply can be read until the next call of this function, kobd_get or kobd_set. */
int kobd_call(kobd_client* client, enum kobd_request request, const kobd_items* items);

/* Questions that only the imitated router answers; on a router no reply comes in time. */
enum kobd_host_control {
    KOBD_HOST_STATE = 1,  /* no item; the reply has two values: the state folder, and why the last commit could
                             not be saved, empty when everything is; then the objects and tables that were
                             changed and not committed */
    KOBD_HOST_FACTORY = 2, /* an object name; the reply has its value from the factory, if any */
    /* The simulator: what the imitated router is made to show, refuse and delay. "times" is how often, 0 always. */
    KOBD_HOST_SIM_SET = 3,           /* name and value, for each object */
    KOBD_HOST_SIM_SET_ANNOUNCED = 4, /* the same, and each is announced */
    KOBD_HOST_SIM_ROW_ADD = 5,       /* table, column and value for each column; reply: index of the new row */
    KOBD_HOST_SIM_ROW_SET = 6,       /* table and index, column and value for each column */
    KOBD_HOST_SIM_ROW_DEL = 7,       /* table and index */
    KOBD_HOST_SIM_FAIL = 8,          /* object or table, or neither; values: operation, code, times */
    KOBD_HOST_SIM_SLOW = 9,          /* object or table; values: milliseconds, times */
    KOBD_HOST_SIM_LIST = 10,         /* value: how many to leave out; reply: three texts for each thing simulated */
    KOBD_HOST_SIM_CLEAR = 11,        /* no item; ends all of it */
    KOBD_HOST_FAILED = 13 /* no item; the reply has what the router could not set in the last request of this client,
                             or, of a dump, the row behind which it could not read the next one: object, or table
                             and index; value: how many objects or rows the request had set before. 1: nothing is
                             known */
};

/* As kobd_call. */
int kobd_host_call(kobd_client* client, enum kobd_host_control control, const kobd_items* items);

/* Why what was changed last was not saved, such as "No space left on device", or that this is not known, because the daemon
 * is busy with other requests. A change is answered with 0 all the same. The empty text when all is saved; NULL where the
 * daemon does not tell, as on a router. Asks the daemon, within the deadline of a call. The text belongs to the client and
 * is valid until its next call. */
const char* kobd_not_saved(kobd_client* client);

/* 1 when the daemon answered the last call, whatever its result; 0 when the library made the code. */
int kobd_answered(const kobd_client* client);

/* Reads the next item behind the result of the last reply. Returns 1; 0 at the end, and always when
 * there was no answer. The item points into the client. kobd_reply_rewind begins again. */
int kobd_reply_next(kobd_client* client, kobd_item* item);
void kobd_reply_rewind(kobd_client* client);

/* Copies the value of one object into value, size bytes with its zero byte. Returns as kobd_call
 * does, or 7; 1 also for a name that is unknown or cannot be read, because the daemon leaves it out of
 * its reply and says why in its log alone; 11 also when the value does not fit, and value is unchanged. */
int kobd_get(kobd_client* client, const char* name, char* value, size_t size);

/* Sets count objects in one request, names[i] to values[i]: all are checked before the first is
 * changed. Returns as kobd_call does, or 7. */
int kobd_set(kobd_client* client, const char* const* names, const char* const* values, size_t count);

/* Takes a name and its value. They are valid until it returns, and it must not use the client. */
typedef void (*kobd_pair_function)(void* context, const char* name, const char* value);

/* Reads count objects in as many requests as needed, and calls each with every name and its value, in the order of
 * names. The value is NULL for an object that is unknown or cannot be read. Returns as kobd_call does, or 7; 11 when a
 * single value does not fit a message. After a failure each was not called. */
int kobd_get_many(kobd_client* client, const char* const* names, size_t count, kobd_pair_function each, void* context);

/* Sends a request that is answered with a dump file (KOBD_SHOW, KOBD_TABLE_DUMP), reads the file and removes it.
 * *content has its bytes until the next call on this client: names in lines, or items. Returns as kobd_call does; 4
 * also when the reply names no dump file, when the file cannot be read, and when the imitated router could not read all
 * rows of a table. Another router does not tell that: its dump has fewer rows. */
int kobd_dump(kobd_client* client, enum kobd_request request, const kobd_items* items, kobd_bytes* content);

/* -- why a call was refused ------------------------------------------------------------------- */

/* A field that does not apply is NULL, and the index -1. */
typedef struct kobd_explanation {
    int code;
    const char* object; /* that was refused, or NULL when it is not known which one of several it was */
    const char* table;
    int32_t index;
    const char* column;
    const char* value;  /* of the object or column */
    const char* reason; /* what is wrong: "it is out of range"; what the check of the daemon said, with its name; or
                           "kobd is not running on this bus". Never NULL */
    const char* right;  /* what would be right: "an integer from 1 to 65535" */
    const char* text;   /* all of it in one line, as kobctl prints it. Never NULL */
    size_t changed;     /* how many objects of a set, from its first one on, were set before the router itself failed,
                           and stay so; 0 also where that is not known */
} kobd_explanation;

/* Why the last call on this client returned what it did; NULL when it returned 0 or there was none. It belongs to the
 * client and is valid until the next call. The check of an object or row gives its reason in the daemon's log alone:
 * the library reads it there, and without the right to read the log it tells what the dictionary knows. After a refused
 * change of rows it may ask the daemon which rows there are, within the deadline of a call.
 * When the router itself fails while it sets several objects or rows, those before it stay set. The imitated router
 * tells which one failed, and the text names the others: which were set, and which were not. Another router does not
 * tell: the text then names all of them. */
const kobd_explanation* kobd_explain(kobd_client* client);

/* -- rows ------------------------------------------------------------------------------------- */

/* Calls each with every column of the row and its value. Returns as kobd_call does, or 7; 11 also when the row does not
 * fit one reply, and kobd_rows reads it. After a failure each was not called. */
int kobd_row_get(kobd_client* client, const char* table, int32_t index, kobd_pair_function each, void* context);

/* Takes a row: count columns and their values. All is valid until it returns, and it must not use the client. */
typedef void (*kobd_row_function)(void* context, const char* table, int32_t index, const char* const* columns,
                                  const char* const* values, size_t count);

/* Calls each with every row of the table, or of count tables, whatever their size. Returns as kobd_dump does, or 7. */
int kobd_rows(kobd_client* client, const char* table, kobd_row_function each, void* context);
int kobd_rows_of(kobd_client* client, const char* const* tables, size_t count, kobd_row_function each, void* context);

/* Adds an empty row, below the object parent_path unless that is NULL. 15 the table is full, 16 it cannot. */
int kobd_row_add(kobd_client* client, const char* table, const char* parent_path, int32_t* index);
int kobd_row_del(kobd_client* client, const char* table, int32_t index); /* 13 there is no such row */

/* A list of changes of rows, to be made together. The add function copies what it is given; rows that are next to each
 * other and have the same table and index become one. 0; 7; 11 a text is longer than 65534 bytes. */
typedef struct kobd_changes kobd_changes;
kobd_changes* kobd_changes_new(void); /* empty; NULL without memory; free it with kobd_changes_free */
void kobd_changes_free(kobd_changes* changes); /* changes may be NULL */
int kobd_changes_add(kobd_changes* changes, const char* table, int32_t index, const char* column, const char* value);

#define KOBD_SILENT 1    /* the rows are neither announced nor made durable */
#define KOBD_UNCHECKED 2 /* values that the router showed before: send them whatever the dictionary says */

/* Makes the changes: all are checked before the first row is written. flags: 0, or of the two above. A table, a column
 * or a value that the dictionary refuses is found before anything is sent: 1, 12 or 2; and so is a missing row among
 * several: 13. Returns as kobd_call does; 4 also when the change file cannot be written, and the explanation tells why.
 * The list stays as it is. */
int kobd_changes_set(kobd_client* client, const kobd_changes* changes, int flags);

/* Removes the change files of all calls in progress in this process. For the handler of a signal that ends the program:
 * the library removes them itself when its calls return. May be called from any thread or signal handler. */
void kobd_remove_change_files(void);

/* -- the dictionary --------------------------------------------------------------------------- */

/* The library knows all objects and tables by itself: these functions ask no daemon, and everything that they return is
 * constant and stays valid. They may be called from any thread. */

typedef struct kobd_description { /* of an object, or of a column of a table */
    const char* name;
    const char* type;           /* in words: "integer", "text", "choice", "flag", "IPv4 address" */
    int is_number;              /* values are integers in decimal digits */
    int is_flag;                /* values are 0 and 1 */
    int readable;
    int writable;
    int secret;                 /* a password, key or PIN, which nobody should show */
    int has_range;              /* then least and most hold */
    int64_t least;              /* the least number, or the fewest bytes of a text */
    int64_t most;               /* the greatest number, at most INT64_MAX, or the most bytes of a text */
    const char* const* choices; /* choice_count of them; NULL: no choice */
    size_t choice_count;
    const char* check;          /* the name of the check that also judges a value, as only the daemon can; or NULL */
    const char* accepts;        /* all of it in words: "an integer from 1 to 65535". Never NULL */
    const char* meaning;        /* one line in plain English, or NULL when there is none */
    const char* unit;           /* "seconds", or NULL: none */
    int is_action;              /* setting it starts something; it reads as 0 */
    const char* alias_of;       /* of a column: the column that it is another name of; or NULL */
    const char* forbidden;      /* the characters that a text must not have: "`$()|&"; or NULL */
    const char* access;         /* in words: "read and write", "read-only", "write-only", "action, reads as 0" */
} kobd_description;

typedef struct kobd_table_description {
    const char* name;
    const char* meaning;                    /* or NULL */
    size_t column_count;
    const kobd_description* const* columns; /* pointers, so that a description may grow */
    int can_add;
    int can_delete;
    int can_get;
    int can_set;
    int can_add_below; /* a row can be added below a parent path */
    int can_list;      /* kobd_rows can read all rows */
    int max_rows;
    const char* check;        /* the name of the check of a row that is set, or NULL */
    const char* accepts;      /* which rows the check accepts, in words, or NULL */
    const char* same_rows_as; /* the table whose rows these are, or NULL: its own */
} kobd_table_description;

/* The object, or table, of this name; NULL: there is none. */
const kobd_description* kobd_describe(const char* name);
const kobd_table_description* kobd_describe_table(const char* name);
const kobd_description* kobd_describe_column(const char* table, const char* column);

/* The object, or table, at this position, in the dictionary's order from 0; NULL behind the last one. Three names stand
 * there twice: kobd_describe finds the first, and so do requests. */
const kobd_description* kobd_object_at(size_t position);
const kobd_table_description* kobd_table_at(size_t position);

/* The name of an object or table that was probably meant; NULL when none is near. */
const char* kobd_did_you_mean(const char* name);

/* What the dictionary says to a value of an object, or of a column, without the daemon: 0, or the code that the daemon
 * would answer, and then *why tells it as kobd_explain does. *why is valid until the next call of either in this
 * thread, and NULL after 0; why may be NULL. After 0 the check of the description, where it has one, may still refuse
 * the value. */
int kobd_check(const char* name, const char* value, const kobd_explanation** why);
int kobd_check_column(const char* table, const char* column, const char* value, const kobd_explanation** why);

/* -- events ----------------------------------------------------------------------------------- */

#define KOBD_MODULE_DAEMON 0x5A510001u   /* kobd itself */
#define KOBD_MODULE_NOTIFY 0x5A510003u   /* receives the announcements of changes */
#define KOBD_MODULE_SERVICES 0x5A510006u /* receives the connection events */
#define KOBD_MODULE_FORWARD 0x5A510009u  /* receives forwarded network events */

typedef struct kobd_watch kobd_watch;

/* Joins the bus as module, to receive what is sent to it; leave it with kobd_watch_close. 0; 7; 9
 * when another program has the module, or the system has no message queue to give. *watch is NULL
 * after a failure. */
int kobd_watch_open(kobd_watch** watch, uint32_t module);
void kobd_watch_close(kobd_watch* watch); /* watch may be NULL */

/* Waits for the next message and puts its id into *id. milliseconds less than 0: without end. 0; 3
 * after kobd_watch_stop; 8 no message in time; 9 the queue was removed. */
int kobd_watch_next(kobd_watch* watch, int milliseconds, uint16_t* id);

/* Reads the next item of the message that kobd_watch_next has returned. Returns 1; 0 at the end and
 * at a broken item. The item points into the watch and is valid until the next kobd_watch_next. */
int kobd_watch_item(kobd_watch* watch, kobd_item* item);

/* The whole payload of that message, as long valid: for network events, which are a text without
 * items, and to tell a broken item from the end. */
kobd_bytes kobd_watch_payload(const kobd_watch* watch);

/* A descriptor for poll(2): readable while a kobd_watch_next would return at once. Only wait for it; it belongs to the
 * watch. -1 with errno when the system gives none. The first call starts a thread that takes the messages. */
int kobd_watch_descriptor(kobd_watch* watch);

/* Makes a kobd_watch_next in progress, and all later ones, return 3. May be called from any thread
 * or signal handler. */
void kobd_watch_stop(kobd_watch* watch);

/* Sends an event to module; nobody answers it. payload may be NULL when length is 0. 0; 3; 5; 9; 11
 * when length is more than KOBD_PAYLOAD_MAX. */
int kobd_send_event(kobd_client* client, uint32_t module, uint16_t id, const void* payload, size_t length);

/* -- taps ------------------------------------------------------------------------------------- */

/* A tap of the imitated router shows every message that passes the daemon, beside all other listeners. It never delays
 * the daemon: what is not taken in time is lost and counted. */
typedef struct kobd_tap kobd_tap;

enum kobd_tap_kind {
    KOBD_TAP_RECEIVED = 1, /* a request or an event came in */
    KOBD_TAP_ANSWERED = 2, /* the reply to the request that came in last */
    KOBD_TAP_SENT = 3      /* an announcement or an event to a module, whether a program has joined as it or not */
};

typedef struct kobd_tapped {
    int kind;
    uint32_t missed;     /* messages that were lost before this one */
    int64_t time_us;     /* microseconds since 1970 */
    uint64_t took_ns;    /* of a reply: nanoseconds since its request came in; else 0 */
    uint32_t process;    /* that sent the request in hand; 0: the daemon acts by itself */
    const char* program; /* its name; empty when it is not known */
    uint32_t module;     /* to which the message goes */
    uint16_t message_class;
    uint16_t id;
    kobd_bytes payload;
    kobd_bytes message; /* the whole of it, with its header of 44 bytes */
} kobd_tapped;

/* Taps the daemon; end it with kobd_tap_close. `client` is used for the request alone. Returns as kobd_call does, or 7;
 * 9 also when the system gives no shared memory; 15 when there are 64 taps. *tap is NULL after a failure. */
int kobd_tap_open(kobd_client* client, kobd_tap** tap);
void kobd_tap_close(kobd_tap* tap); /* tap may be NULL */

/* Waits for the next message. 0; 3 the daemon has ended; 8 no message in time. What *tapped points to is valid until
 * the next call. */
int kobd_tap_next(kobd_tap* tap, int milliseconds, kobd_tapped* tapped);

/* As kobd_watch_descriptor, for kobd_tap_next. What the thread has taken and you have not is at most 64 messages. */
int kobd_tap_descriptor(kobd_tap* tap);

/* -- looking ---------------------------------------------------------------------------------- */

typedef struct kobd_module {
    int claimed;       /* 1 while a living process has the module */
    int has_queue;     /* 1 when there is a queue for it */
    uint64_t messages; /* waiting in the queue */
    uint64_t capacity; /* bytes that the queue holds */
    uint32_t owner;    /* user id of the queue's owner */
    int32_t process;   /* that has the module; 0: none, or one that cannot be seen from here */
} kobd_module;

/* Looks at a module without joining it. Returns 0, also when it has no queue; else an errno, such as
 * EACCES when the queue belongs to another user. */
int kobd_module_look(uint32_t module, kobd_module* look);

#ifdef __cplusplus
}
#endif

#endif
