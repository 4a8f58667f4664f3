// The record forms of the dictionary. Records are constants of the build. What changes while the daemon
// runs lies beside them, and they point to it: an object's staged value and a table's pending rows.
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

// The value given for an object in the set request in hand: heap text owned here, linked into the
// list of staged objects so that releasing them costs what was staged.
struct StagedValue
{
    char* text = nullptr;
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

// Judges a whole row before it is stored; may tidy it up, for what it leaves is what is stored.
using RowValidator = int (*)(void* row);

// The list behind a table. Row indexes are 32-bit; every function returns 0 or a result code, and
// row blocks belong to the caller. nullptr: the list cannot do that.
struct TableOps
{
    int (*add)(int32_t* index) = nullptr;                               // makes room, tells the new row's index
    int (*del)(int32_t index) = nullptr;                                // removes the row
    int (*get)(int32_t index, void* row) = nullptr;                     // fills a block of the row size
    int (*set)(int32_t index, const void* row) = nullptr;               // stores the whole row
    int (*setPPath)(int32_t index, const char* parent_path) = nullptr;  // its result is not looked at
    int (*next)(int32_t previous, void* row) = nullptr;                 // the row after `previous`, -1 for the first
    RowValidator validate = nullptr;
};

struct TableDef;

// A row that the table set request in hand changes (tables/pending_rows.h).
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

// The catalogue, in its fixed order.
extern const std::span<const ObjDef> kObjects;
extern const std::span<const TableDef> kTables;
}  // namespace kobd
