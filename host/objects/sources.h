// Where each object of the imitated router has its value from: the rows of host/factory/sources.def.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "dictionary/catalogue/view.h"

namespace kobd::host
{
enum class SourceKind
{
    Value,
    SameAs,
    Nvram,
    RowCount,
    RowIndexes,
};

struct Source
{
    const char* object;  // its name in the catalogue
    SourceKind kind;
    const char* text;  // factory text, nvram key or table; empty for SameAs
    size_t home;       // number of the object that keeps the value: another one for SameAs alone
};

inline constexpr size_t kNoObject = -1;

// One for each object, in catalogue order.
std::span<const Source> Sources();

// The object's name in the state file: NAME#2 for the second object of a name. NumberOf returns
// kNoObject for a name that no object has.
std::string StateName(size_t number);
size_t NumberOf(std::string_view state_name);

// The number of the object whose row defines the accessor that this object is read or set with; kNoObject where it has
// none, or the daemon has it.
size_t AccessorOf(size_t number, NamedFunction ObjectAccessors::*accessor);
}  // namespace kobd::host
