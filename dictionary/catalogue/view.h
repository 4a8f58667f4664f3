// The rows of objects.def and tables.def as data: functions by their names, so that a program reads the
// catalogue without linking them. Declarations, records and the imitated router's definitions are made
// from the two files themselves; everything else reads the arrays below.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "dictionary/catalogue/layouts.h"
#include "dictionary/row_layout.h"
#include "dictionary/value_type.h"

namespace kobd
{
enum class Access
{
    kReadWrite,
    kReadOnly,
    kWriteOnly,
    kAction,  // starts something, reads as "0"
};

struct ObjectRow
{
    const char* name;
    ValueType type;
    Access access;
    const char* limitation;  // nullptr: none
    const char* validator;   // name of the check, nullptr: none
    bool shared;             // an earlier row already names one of its accessors
};

// A function that a row names.
struct NamedFunction
{
    enum Naming
    {
        kFirst,   // no earlier row names it
        kShared,  // an earlier row names it
        kOwn,     // the daemon defines it, not the platform
    };

    std::string_view name;  // empty: none
    Naming naming = kFirst;

    // Whether the platform defines the function for this row.
    constexpr bool IsDefinedHere() const { return !name.empty() && naming == kFirst; }
};

struct ObjectAccessors
{
    NamedFunction getter;
    NamedFunction setter;
};

// The operations that a table may have, one bit each, in the order in which rows name them.
enum Operation : unsigned
{
    kAdd = 1u << 0,
    kDel = 1u << 1,
    kGet = 1u << 2,
    kSet = 1u << 3,
    kSetParentPath = 1u << 4,
    kNext = 1u << 5,
    kValidate = 1u << 6,
};

struct TableRow
{
    const char* name;
    RowLayout layout;
    std::string_view layout_name;
    uint32_t max_rows;
    const char* list_of;    // the table whose list this is: its own name, or another table's
    bool daemon_list;       // the daemon keeps the list, not the platform
    unsigned operations;    // Operation bits of that list
    const char* validator;  // name of the check of a row, empty: none

    constexpr bool Has(Operation operation) const { return (operations & operation) != 0; }
};

// The functions of a table's operations, in the order of the Operation bits. A table that shares the
// list of another one names none.
using TableFunctions = std::array<NamedFunction, std::bit_width(unsigned{kValidate})>;

namespace view
{
struct Object
{
    ObjectRow row;
    ObjectAccessors accessors;
};

constexpr Object MakeObject(const char* name, ValueType type, Access access, NamedFunction getter, NamedFunction setter,
                            const char* limitation = nullptr, const char* validator = nullptr)
{
    const bool shared = getter.naming == NamedFunction::kShared || setter.naming == NamedFunction::kShared;
    return {{name, type, access, limitation, validator, shared}, {getter, setter}};
}

struct Table
{
    TableRow row;
    TableFunctions functions;
};

struct NamedOperation
{
    Operation operation;
    NamedFunction function;
};

constexpr Table MakeTable(const char* name, const RowLayout& layout, std::string_view layout_name, uint32_t max_rows,
                          const char* list_of, bool daemon_list, std::initializer_list<NamedOperation> operations)
{
    Table table = {{name, layout, layout_name, max_rows, list_of, daemon_list, 0, ""}, {}};
    for (const auto& [operation, function] : operations)
    {
        table.row.operations |= operation;
        table.functions[std::countr_zero(unsigned{operation})] = function;
        if (operation == kValidate) table.row.validator = function.name.data();
    }
    return table;
}

// FUNCTION makes a NamedFunction of an argument; SHARED and OWN put the naming behind the name.
#define SHARED(function) function, kShared
#define OWN(function) function, kOwn
#define FUNCTION(...) NAMED(__VA_ARGS__, kFirst, )
#define NAMED(function, naming, ...) \
    NamedFunction { #function, NamedFunction::naming }

#define LIMITS(limitation, ...) , limitation __VA_OPT__(, #__VA_ARGS__)
#define ROW(name, type, access, getter, setter, ...) \
    MakeObject(name, type, Access::access, getter, setter __VA_OPT__(LIMITS(__VA_ARGS__))),
#define OBJECT(name, type, getter, setter, ...) \
    ROW(name, type, kReadWrite, FUNCTION(getter), FUNCTION(setter) __VA_OPT__(, ) __VA_ARGS__)
#define RO(name, type, getter, ...) ROW(name, type, kReadOnly, FUNCTION(getter), {} __VA_OPT__(, ) __VA_ARGS__)
#define WO(name, type, setter, ...) ROW(name, type, kWriteOnly, {}, FUNCTION(setter) __VA_OPT__(, ) __VA_ARGS__)
#define ACTION(name, type, setter, ...) ROW(name, type, kAction, {}, FUNCTION(setter) __VA_OPT__(, ) __VA_ARGS__)
constexpr auto kObjects = std::to_array<Object>({
#include "dictionary/catalogue/objects.def"
});
#undef LIMITS
#undef ROW
#undef OBJECT
#undef RO
#undef WO
#undef ACTION

#define ADD(...) {kAdd, FUNCTION(__VA_ARGS__)},
#define DEL(...) {kDel, FUNCTION(__VA_ARGS__)},
#define GET(...) {kGet, FUNCTION(__VA_ARGS__)},
#define SET(...) {kSet, FUNCTION(__VA_ARGS__)},
#define PATH(...) {kSetParentPath, FUNCTION(__VA_ARGS__)},
#define NEXT(...) {kNext, FUNCTION(__VA_ARGS__)},
#define VALIDATE(...) {kValidate, FUNCTION(__VA_ARGS__)},
#define TABLE(name, layout, max_rows, ...) MakeTable(name, layout, #layout, max_rows, name, false, {__VA_ARGS__}),
#define OWN_LIST(name, layout, max_rows, ...) MakeTable(name, layout, #layout, max_rows, name, true, {__VA_ARGS__}),
#define SAME_LIST(name, layout, max_rows, other) MakeTable(name, layout, #layout, max_rows, other, false, {}),
constexpr auto kTables = std::to_array<Table>({
#include "dictionary/catalogue/tables.def"
});
#undef SHARED
#undef OWN
#undef FUNCTION
#undef NAMED

// One member of each row. Apart, so that a program holds only what it reads at run time.
template <typename Row, size_t kCount, typename Member>
constexpr std::array<Member, kCount> Each(const std::array<Row, kCount>& rows, Member Row::*member)
{
    std::array<Member, kCount> members{};
    std::ranges::transform(rows, members.begin(), member);
    return members;
}

// Gives the rows that name another table's list its operations and its check.
template <size_t kCount>
constexpr std::array<TableRow, kCount> Joined(std::array<TableRow, kCount> rows)
{
    for (TableRow& row : rows)
        for (const TableRow& owner : rows)
            if (std::string_view(owner.name) == row.list_of)
            {
                row.operations = owner.operations;
                row.validator = owner.validator;
            }
    return rows;
}
}  // namespace view

// All arrays are in catalogue order.
inline constexpr std::array kObjectRows = view::Each(view::kObjects, &view::Object::row);
inline constexpr std::array kObjectAccessors = view::Each(view::kObjects, &view::Object::accessors);
inline constexpr std::array kTableRows = view::Joined(view::Each(view::kTables, &view::Table::row));
inline constexpr std::array kTableFunctions = view::Each(view::kTables, &view::Table::functions);
}  // namespace kobd
