// Reading and writing the file of kobctl export.
#include "client/state/settings_file.h"

#include <utility>

#include "host/state/state_store.h"

namespace kobd::client
{
namespace
{
constexpr std::string_view kHeading = "# Settable values and rows of a router, for kobctl import.\n";
constexpr std::string_view kEnd = "end";
constexpr std::string_view kRow = " row";

std::string Line(const std::string& name, const std::string& value) { return name + "=" + host::Escape(value) + "\n"; }

class Reader
{
public:
    explicit Reader(SettingsFile* file) : file_(file) {}

    // What is wrong with the line, or the empty text.
    std::string ReadLine(size_t number, std::string_view line)
    {
        if (line.empty() || line.front() == '#') return "";
        if (ended_) return "nothing may follow 'end'";
        if (line == kEnd)
        {
            ended_ = true;
            return "";
        }
        return host::IsHeading(line) ? ReadHeading(number, line.substr(1, line.size() - 2)) : ReadValue(number, line);
    }

    bool Ended() const { return ended_; }

private:
    std::string ReadHeading(size_t number, std::string_view text)
    {
        if (!text.ends_with(kRow))
        {
            file_->tables.push_back({number, std::string(text)});
            return "";
        }
        text.remove_suffix(kRow.size());
        if (file_->tables.empty() || file_->tables.back().name != text)
            return "a row of " + std::string(text) + " stands before [" + std::string(text) + "]";
        file_->tables.back().rows.emplace_back();
        return "";
    }

    std::string ReadValue(size_t number, std::string_view line)
    {
        const size_t equals = line.find('=');
        FileValue value = {number, std::string(line.substr(0, equals)), ""};
        if (equals == std::string_view::npos || equals == 0)
            return "neither NAME=VALUE nor [TABLE] nor [TABLE row]: '" + std::string(line) + "'";
        if (!host::Unescape(line.substr(equals + 1), &value.value))
            return value.name + ": a backslash is written \\\\, a line end \\n or \\r";
        if (value.value.find('\0') != std::string::npos) return value.name + ": a value holds no zero byte";
        if (file_->tables.empty())
            file_->values.push_back(std::move(value));
        else if (file_->tables.back().rows.empty())
            return value.name + ": a column stands behind [" + file_->tables.back().name + " row]";
        else
            file_->tables.back().rows.back().push_back(std::move(value));
        return "";
    }

    SettingsFile* file_;
    bool ended_ = false;
};
}  // namespace

void ReadSettings(std::string_view text, SettingsFile* file, LineErrors* errors)
{
    Reader reader(file);
    size_t number = 0;
    for (const std::string_view line : LinesOf(text))
        if (std::string what = reader.ReadLine(++number, line); !what.empty()) errors->emplace(number, what);
    if (!reader.Ended()) errors->emplace(number, "the last line is not 'end', the file was cut");
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
