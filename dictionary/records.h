// The record forms of the dictionary. Records are constants of the build. They point to the two things
// that change while the daemon runs: an object's staged value and a table's pending rows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "daemon/base/messages.h"
#include "dictionary/row_layout.h"
#include "dictionary/value_type.h"
#include "platform/message.h"

namespace kobd
{
enum RecordKind : uint32_t
{
    kKindObject = 0,
    kKindTable = 1,
};

using ObjectGet = int (*)(char* value);
using ObjectSet = int (*)(const char* value);
using ObjectValidator = int (*)(const char* value);

// The value that the current set request gives for an object. Staged values form a list, so that
// releasing them does not walk over all objects.
struct StagedValue
{
    char* text = nullptr;  // heap, owned here; nullptr: none
    StagedValue* next = nullptr;
};

// How a proposed value is judged.
struct CheckDescriptor
{
    ValueType type;
    const char* limitation;     // nullptr: none
    ObjectValidator validator;  // nullptr: none
};

struct ObjDef
{
    RecordKind kind;
    const char* name;
    StagedValue* staged;  // never nullptr
    ObjectGet get;        // nullptr: write-only
    ObjectSet set;        // nullptr: read-only
    CheckDescriptor check;
};

// Judges a whole row before it is stored. It may tidy the row up: the row is stored as the check leaves it.
using RowValidator = int (*)(void* row);

// The operations of the list behind a table; nullptr for one that the list does not have. Each returns
// 0 or a result code. Row blocks belong to the caller.
struct TableOps
{
    int (*add)(int32_t* index) = nullptr;                               // tells the index of a new row
    int (*del)(int32_t index) = nullptr;                                // removes the row
    int (*get)(int32_t index, void* row) = nullptr;                     // fills a block of the row size
    int (*set)(int32_t index, const void* row) = nullptr;               // stores the whole row
    int (*setPPath)(int32_t index, const char* parent_path) = nullptr;  // the result is ignored
    int (*next)(int32_t previous, void* row) = nullptr;                 // the row after `previous`, -1 for the first
    RowValidator validate = nullptr;
};

struct TableDef;

// A row that the current table set request changes (tables/pending_rows.h).
struct PendingRow
{
    const TableDef* table = nullptr;  // nullptr: the place is free
    char* row = nullptr;              // table->row_size bytes of the heap, owned here
    PendingRow* next = nullptr;       // of the same table
};

// The pending rows of one table, in the order in which the request first named them.
struct PendingRows
{
    PendingRow* first = nullptr;
    PendingRow* last = nullptr;
};

struct TableDef
{
    RecordKind kind;
    const char* name;
    const TableOps* ops;       // never nullptr
    const ColumnDef* columns;  // first of column_count; tables of one layout share them
    uint32_t column_count;
    uint32_t row_size;  // bytes
    PendingRows* pending;
    uint32_t max_rows;
};

// Bytes of the largest row of the catalogue (CellularInterfaceTable).
inline constexpr uint32_t kRowMax = 6408;

// Bytes of the items that any row of the catalogue can become (CellularInterfaceTable has the
// most). Texts held outside a row (Content of SmsTable) come on top.
inline constexpr size_t kRowItemsMax = 6638;

// The rows that all tables of the catalogue may hold together: their number, their bytes, and the bytes
// of their items. Texts held outside a row come on top.
extern const size_t kRowsMax;
extern const size_t kRowsBytes;
extern const size_t kRowsItemsBytes;

// Places for kRowsMax pending rows and a third as many more, so that a row's place is found by its hash.
extern const std::span<PendingRow> kPendingRows;

// Places of the name index: a power of two, at least twice as many as the catalogue has names.
inline constexpr size_t kNameSlots = 4096;

// The catalogue, in its fixed order.
extern const std::span<const ObjDef> kObjects;
extern const std::span<const TableDef> kTables;
}  // namespace kobd
