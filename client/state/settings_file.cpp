// Reading and writing the file of kobctl export.
#include "client/state/settings_file.h"

#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "host/state/folder.h"

namespace kobd::client
{
namespace
{
constexpr std::string_view kHeading = "# Settable values and rows of a router, for kobctl import.\n";
constexpr std::string_view kEnd = "end";
constexpr std::string_view kRow = " row";

bool IsHeading(std::string_view line) { return line.size() > 2 && line.front() == '[' && line.back() == ']'; }

std::string Line(const std::string& name, const std::string& value) { return name + "=" + host::Escape(value) + "\n"; }

// The readers of a line return what is wrong with it, or the empty text.
std::string ReadHeading(size_t number, std::string_view text, SettingsFile* file)
{
    const std::string name(text.substr(0, text.size() - (text.ends_with(kRow) ? kRow.size() : 0)));
    if (!text.ends_with(kRow))
        file->tables.push_back({number, name});
    else if (file->tables.empty() || file->tables.back().name != name)
        return "[" + name + " row] must follow [" + name + "]";
    else
        file->tables.back().rows.emplace_back();
    return "";
}

std::string ReadValue(size_t number, std::string_view line, SettingsFile* file)
{
    const size_t equals = line.find('=');
    FileValue value = {number, std::string(line.substr(0, equals)), ""};
    if (equals == std::string_view::npos || equals == 0)
        return "neither NAME=VALUE nor [TABLE] nor [TABLE row]: '" + std::string(line) + "'";
    if (!host::Unescape(line.substr(equals + 1), &value.value))
        return value.name + ": a backslash is written \\\\, a line end \\n or \\r";
    if (value.value.find('\0') != std::string::npos) return value.name + ": a value cannot hold a zero byte";
    if (file->tables.empty())
        file->values.push_back(std::move(value));
    else if (file->tables.back().rows.empty())
        return std::exchange(file->tables.back().no_rows_told, true)
                   ? ""
                   : value.name + ": a column must follow [TABLE row], not [" + file->tables.back().name + "]";
    else
        file->tables.back().rows.back().push_back(std::move(value));
    return "";
}

std::string ReadLine(size_t number, std::string_view line, SettingsFile* file)
{
    if (line.empty() || line.front() == '#') return "";
    if (file->ended) return "nothing may follow 'end'";
    file->ended = line == kEnd;
    if (file->ended) return "";
    return IsHeading(line) ? ReadHeading(number, line.substr(1, line.size() - 2), file) : ReadValue(number, line, file);
}
}  // namespace

void ReadSettings(std::string_view text, SettingsFile* file, LineErrors* errors)
{
    size_t number = 0;
    for (const std::string_view line : LinesOf(text))
        if (std::string what = ReadLine(++number, line, file); !what.empty()) errors->emplace(number, what);
    if (!file->ended)
        errors->emplace(std::max<size_t>(number, 1), "the last line is not 'end', so the file is incomplete");
}

namespace
{
// A number without leading zeros, a flag, a choice as the dictionary spells it; any other text as it is.
Json ObjectJson(const kobd_description& object, const std::string& value)
{
    if (object.is_number != 0) return ValueJson(&object, std::to_string(strtoull(value.c_str(), nullptr, 10)));
    for (size_t i = 0; i < object.choice_count; ++i)
        if (strcasecmp(object.choices[i], value.c_str()) == 0) return object.choices[i];
    return value;
}

Json RowJson(const TableEntry& table, const Row& row)
{
    Json json = Json::object();
    for (const Assignment& one : ExportedValues(table, row))
        if (!one.value.empty())
            json[one.name] = ValueJson(kobd_describe_column(table.name, one.name.c_str()), one.value);
    return json;
}
}  // namespace

Json SettingsJson(const RouterState& state)
{
    Json json = {{"objects", Json::object()}, {"unsettable", Json::object()}, {"tables", Json::object()}};
    for (const auto& [name, value] : state.values)
        if (WhatIsWrong(name, value).empty())
            json["objects"][name] = ObjectJson(*kobd_describe(name.c_str()), value);
        else
            json["unsettable"][name] = value;
    for (const auto& [name, rows] : state.rows)
    {
        json["tables"][name] = Json::array();
        for (const Row& row : rows) json["tables"][name].push_back(RowJson(*FindTable(name), row));
    }
    return json;
}

std::string SettingsText(const RouterState& state, Words* unread)
{
    std::string text(kHeading);
    for (const ObjectEntry& object : kObjectRows)
    {
        if (!IsExported(object)) continue;
        const auto found = state.values.find(object.name);
        if (found == state.values.end())
        {
            unread->emplace_back(object.name);
            continue;
        }
        // A router may hold what its own limits refuse, for example an empty text from the factory.
        if (!WhatIsWrong(object.name, found->second).empty()) text += "# ";
        text += Line(object.name, found->second);
    }
    for (const TableEntry& table : kTableRows)
    {
        if (!IsExported(table)) continue;
        const std::string name = table.name;
        text += "[" + name + "]\n";
        for (const Row& row : state.rows.at(name))
        {
            text += "[" + name + std::string(kRow) + "]\n";
            for (const Assignment& value : ExportedValues(table, row))
                if (!value.value.empty()) text += Line(value.name, value.value);
        }
    }
    return text + std::string(kEnd) + "\n";
}
}  // namespace kobd::client
