// The rows of objects.def and tables.def as data: names as text, no function, so that a program reads
// the catalogue without linking what the rows name. Everything but records, declarations and the
// definitions of the imitated router reads them here.
#pragma once

#include <array>
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
    unsigned operations;    // Operation bits of that list
    const char* validator;  // name of the check of a row, empty: none

    constexpr bool Has(Operation operation) const { return (operations & operation) != 0; }
};

namespace view
{
constexpr ObjectRow Object(const char* name, ValueType type, Access access, bool shared,
                           const char* limitation = nullptr, const char* validator = nullptr)
{
    return {name, type, access, limitation, validator, shared};
}

struct NamedOperation
{
    Operation operation;
    const char* validator = "";
};

constexpr TableRow Table(const char* name, const RowLayout& layout, std::string_view layout_name, uint32_t max_rows,
                         const char* list_of, std::initializer_list<NamedOperation> operations)
{
    TableRow row = {name, layout, layout_name, max_rows, list_of, 0, ""};
    for (const NamedOperation& one : operations)
    {
        row.operations |= one.operation;
        if (one.operation == kValidate) row.validator = one.validator;
    }
    return row;
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

// Both arrays are in catalogue order.
//
// SHARED(f) makes two arguments of one, so that IS_SHARED finds `true` in the second place.
#define SHARED(accessor) accessor, true
#define OWN(accessor) accessor
#define IS_SHARED(...) SECOND(__VA_ARGS__, false, )
#define SECOND(first, second, ...) second
#define LIMITS(limitation, ...) , limitation __VA_OPT__(, #__VA_ARGS__)
#define ROW(name, type, access, shared, ...) \
    view::Object(name, type, Access::access, shared __VA_OPT__(LIMITS(__VA_ARGS__))),
#define OBJECT(name, type, getter, setter, ...) \
    ROW(name, type, kReadWrite, (IS_SHARED(getter) || IS_SHARED(setter)) __VA_OPT__(, ) __VA_ARGS__)
#define RO(name, type, getter, ...) ROW(name, type, kReadOnly, IS_SHARED(getter) __VA_OPT__(, ) __VA_ARGS__)
#define WO(name, type, setter, ...) ROW(name, type, kWriteOnly, IS_SHARED(setter) __VA_OPT__(, ) __VA_ARGS__)
#define ACTION(name, type, setter, ...) ROW(name, type, kAction, IS_SHARED(setter) __VA_OPT__(, ) __VA_ARGS__)
inline constexpr auto kObjectRows = std::to_array<ObjectRow>({
#include "dictionary/catalogue/objects.def"
});
#undef SHARED
#undef OWN
#undef IS_SHARED
#undef SECOND
#undef LIMITS
#undef ROW
#undef OBJECT
#undef RO
#undef WO
#undef ACTION

#define ADD(...) {kAdd},
#define DEL(...) {kDel},
#define GET(...) {kGet},
#define SET(...) {kSet},
#define PATH(...) {kSetParentPath},
#define NEXT(...) {kNext},
#define VALIDATE(function) {kValidate, #function},
#define ALL(stem) ADD() DEL() GET() SET() PATH() NEXT()
#define TABLE(name, layout, max_rows, ...) view::Table(name, layout, #layout, max_rows, name, {__VA_ARGS__}),
#define OWN_LIST TABLE
#define SAME_LIST(name, layout, max_rows, other) view::Table(name, layout, #layout, max_rows, other, {}),
inline constexpr std::array kTableRows = view::Joined(std::to_array<TableRow>({
#include "dictionary/catalogue/tables.def"
}));
#undef ADD
#undef DEL
#undef GET
#undef SET
#undef PATH
#undef NEXT
#undef VALIDATE
#undef ALL
#undef TABLE
#undef OWN_LIST
#undef SAME_LIST
}  // namespace kobd
