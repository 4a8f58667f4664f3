// Running values: factory values by object, changed ones over them.
#include "host/objects/object_values.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "host/objects/sources.h"
#include "host/state/load_report.h"
#include "host/state/report.h"
#include "host/tables/lists.h"
#include "platform/nvram.h"

namespace kobd::host
{
namespace
{
constexpr size_t kValueBuffer = 2048;  // bytes that object get offers
constexpr int kInvokeFailed = 17;

struct Values
{
    std::vector<std::string> running;  // by object
    std::vector<size_t> touched;       // objects, ascending, whose value has ever been another than the factory's
    Settings unknown;                  // settings of a newer build, kept as they are
    bool dirty = false;
};
Values values;

const char* FactoryText(const Source& source) { return source.kind == SourceKind::Value ? source.text : ""; }

// Remembers that this row may be in the state file, so that a commit looks at these rows alone.
void Touch(size_t number)
{
    const auto place = std::lower_bound(values.touched.begin(), values.touched.end(), number);
    if (place == values.touched.end() || *place != number) values.touched.insert(place, number);
}

// What the source tells of its table, read from the rows themselves so that they cannot disagree.
std::string ListText(const Source& source)
{
    const List* list = FindList(source.text);
    if (list == nullptr) return {};
    const auto& rows = list->rows.Rows();
    if (source.kind == SourceKind::RowCount) return std::to_string(rows.size());
    std::string text;
    for (const Row& row : rows) text += (text.empty() ? "" : ",") + std::to_string(IndexOf(row));
    return text;
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
    values = {};
    for (const Source& source : Sources()) values.running.emplace_back(FactoryText(source));
    Settings settings;
    ReportLoad("ObjectValuesLoad", path, LoadSettings(WhatCounts(path), &settings));
    for (const auto& setting : settings)
    {
        const size_t number = NumberOf(setting.first);
        if (number == kNoObject)
            values.unknown.push_back(setting);
        else
        {
            values.running[number] = setting.second;
            Touch(number);
        }
    }
}

bool ObjectValuesChanged() { return values.dirty; }

Settings ObjectValuesState()
{
    Settings settings;
    for (const size_t number : values.touched)
        if (values.running[number] != FactoryText(Sources()[number]))
            settings.emplace_back(StateName(number), values.running[number]);
    settings.insert(settings.end(), values.unknown.begin(), values.unknown.end());
    return settings;
}

void ObjectValuesKept() { values.dirty = false; }

int ObjectValueGet(size_t number, char* value)
try
{
    const Source& source = Sources()[number];
    switch (source.kind)
    {
        case SourceKind::Nvram:
            return nv_get(source.text, value, kValueBuffer) != 0 && errno == ENOMEM ? kInvokeFailed : 0;
        case SourceKind::RowCount:
        case SourceKind::RowIndexes: return GiveText(ListText(source), value);
        case SourceKind::Value:
        case SourceKind::SameAs: break;
    }
    return GiveText(values.running[source.home], value);
}
catch (const std::bad_alloc&)
{
    return OutOfMemory("ObjectValueGet", kInvokeFailed);
}

int ObjectValueSet(size_t number, const char* value)
try
{
    const Source& source = Sources()[number];
    if (source.kind == SourceKind::Nvram) return nvram_set(source.text, value) == 0 ? 0 : kInvokeFailed;
    const size_t home = source.home;
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
    Journal(Sources()[number].object, value);
    return ObjectValueSet(number, value);
}
}  // namespace kobd::host
