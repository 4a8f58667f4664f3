// Running values: factory values by object, changed ones over them.
#include "host/objects/object_values.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "dictionary/value_type.h"
#include "host/state/load_report.h"
#include "host/state/report.h"
#include "host/tables/list_values.h"
#include "platform/nvram.h"

namespace kobd::host
{
namespace
{
constexpr size_t kValueBuffer = 2048;  // bytes that object get offers
constexpr int kInvokeFailed = 17;

struct Row
{
    const char* name;
    ValueType type;
    const char* limitation;
};

constexpr Row MakeRow(const char* name, ValueType type, const char* limitation = nullptr)
{
    return {name, type, limitation};
}

#define SHARED(accessor) accessor
#define ROW_LIMIT(limitation, ...) limitation
#define OBJECT(name, type, getter, setter, ...) MakeRow(name, type __VA_OPT__(, ROW_LIMIT(__VA_ARGS__, ))),
#define RO(name, type, getter, ...) MakeRow(name, type __VA_OPT__(, ROW_LIMIT(__VA_ARGS__, ))),
#define WO(name, type, setter, ...) MakeRow(name, type __VA_OPT__(, ROW_LIMIT(__VA_ARGS__, ))),
#define ACTION(name, type, setter, ...) MakeRow(name, type __VA_OPT__(, ROW_LIMIT(__VA_ARGS__, ))),
constexpr Row kRows[] = {
#include "dictionary/catalogue/objects.def"
};
#undef OBJECT
#undef RO
#undef WO
#undef ACTION
#undef SHARED
constexpr size_t kRowCount = std::size(kRows);

struct NameValue
{
    const char* name;
    const char* value;
};

#define VALUE(name, value) {name, value},
constexpr NameValue kFactory[] = {
#include "host/factory/factory_values.def"
};
#undef VALUE

// Objects that show the same thing: the first is another name of the second.
#define SAME(name, as) {name, as},
constexpr NameValue kSame[] = {
#include "host/factory/same_values.def"
};
#undef SAME

#define NVRAM(name, key) {name, key},
constexpr NameValue kInNvram[] = {
#include "host/factory/nvram_values.def"
};
#undef NVRAM

struct Values
{
    std::array<std::string, kRowCount> factory;
    std::array<std::string, kRowCount> running;
    std::array<size_t, kRowCount> home;               // the row that keeps the value
    std::array<const char*, kRowCount> nvram_key;     // where nvram keeps the value, else nullptr
    std::array<const ListValue*, kRowCount> of_list;  // what it tells of a list, else nullptr
    std::array<std::string, kRowCount> key;
    std::unordered_map<std::string_view, size_t> by_key;
    std::vector<size_t> touched;  // rows, ascending, whose value has ever been another than the factory's
    Settings unknown;             // settings of a newer build, kept as they are
    bool dirty = false;
};
Values values;

// What an object without a factory value starts with: the least its own check accepts.
std::string DefaultValue(const Row& row)
{
    if (row.limitation == nullptr)
        return row.type == VT_STRING || row.type == VT_TEXT || row.type == VT_TEXT_2 ? "" : "0";
    const std::string_view limitation = row.limitation;
    if (row.type == VT_ENUM) return std::string(limitation.substr(0, limitation.find('|')));
    if (row.type == VT_INT32 || row.type == VT_UINT32) return std::string(limitation.substr(0, limitation.find(':')));
    return "";
}

void ForgetRows()
{
    values.by_key.clear();
    values.nvram_key.fill(nullptr);
    values.of_list.fill(nullptr);
    values.touched.clear();
    values.unknown.clear();
    values.dirty = false;
}

void NameRows()
{
    for (size_t number = 0; number < kRowCount; ++number)
    {
        values.key[number] = kRows[number].name;
        // The second of two objects of one name has a key of its own.
        if (values.by_key.contains(values.key[number])) values.key[number] += "#2";
        values.by_key.emplace(values.key[number], number);
        values.home[number] = number;
        values.factory[number] = DefaultValue(kRows[number]);
    }
    for (const auto& [name, as] : kSame)
        if (values.by_key.contains(name) && values.by_key.contains(as))
            values.home[values.by_key.at(name)] = values.by_key.at(as);
    for (const auto& [name, key] : kInNvram)
        if (const auto found = values.by_key.find(name); found != values.by_key.end())
            values.nvram_key[found->second] = key;
    for (const auto& [name, value] : kFactory)
        if (const auto found = values.by_key.find(name); found != values.by_key.end())
            values.factory[found->second] = value;
    for (const ListValue& of_list : ListValues())
        if (const auto found = values.by_key.find(of_list.object); found != values.by_key.end())
            values.of_list[found->second] = &of_list;
    values.running = values.factory;
}

// Remembers that this row may be in the state file, so that a commit looks at these rows alone.
void Touch(size_t number)
{
    const auto place = std::lower_bound(values.touched.begin(), values.touched.end(), number);
    if (place == values.touched.end() || *place != number) values.touched.insert(place, number);
}

int GiveText(const std::string& text, char* value)
{
    if (text.size() >= kValueBuffer) return kInvokeFailed;
    memcpy(value, text.c_str(), text.size() + 1);
    return 0;
}
}  // namespace

void ObjectValuesLoad(const std::string& path)
{
    ForgetRows();
    NameRows();
    Settings settings;
    ReportLoad("ObjectValuesLoad", path, LoadSettings(WhatCounts(path), &settings));
    for (const auto& setting : settings)
    {
        const auto found = values.by_key.find(setting.first);
        if (found == values.by_key.end())
            values.unknown.push_back(setting);
        else
        {
            values.running[found->second] = setting.second;
            Touch(found->second);
        }
    }
}

bool ObjectValuesChanged() { return values.dirty; }

Settings ObjectValuesState()
{
    Settings settings;
    for (const size_t number : values.touched)
        if (values.running[number] != values.factory[number])
            settings.emplace_back(values.key[number], values.running[number]);
    settings.insert(settings.end(), values.unknown.begin(), values.unknown.end());
    return settings;
}

void ObjectValuesKept() { values.dirty = false; }

int ObjectValueGet(size_t number, char* value)
try
{
    if (const char* key = values.nvram_key[number])
        return nv_get(key, value, kValueBuffer) != 0 && errno == ENOMEM ? kInvokeFailed : 0;
    if (const ListValue* of_list = values.of_list[number]) return GiveText(ListValueText(*of_list), value);
    return GiveText(values.running[values.home[number]], value);
}
catch (const std::bad_alloc&)
{
    return OutOfMemory("ObjectValueGet", kInvokeFailed);
}

int ObjectValueSet(size_t number, const char* value)
try
{
    if (const char* key = values.nvram_key[number]) return nvram_set(key, value) == 0 ? 0 : kInvokeFailed;
    const size_t home = values.home[number];
    std::string& text = values.running[home];
    if (strlen(value) >= kValueBuffer) return kInvokeFailed;  // it could never be read again
    if (text == value) return 0;
    Touch(home);  // first: both may run out of memory, and a value that is not touched would not be kept
    text = value;
    values.dirty = true;
    return 0;
}
catch (const std::bad_alloc&)
{
    return OutOfMemory("ObjectValueSet", kInvokeFailed);
}

int ObjectAction(size_t number, const char* value)
{
    Journal(kRows[number].name, value);
    return ObjectValueSet(number, value);
}
}  // namespace kobd::host
