// Reading and writing the file of kobctl export.
#include "client/state/settings_file.h"

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
        return IsHeading(line) ? ReadHeading(number, line.substr(1, line.size() - 2)) : ReadValue(number, line);
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
        file_->tables.back().rows.push_back({number});
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
            file_->tables.back().rows.back().values.push_back(std::move(value));
        return "";
    }

    SettingsFile* file_;
    bool ended_ = false;
};
}  // namespace

void ReadSettings(std::string_view text, SettingsFile* file, std::vector<LineError>* errors)
{
    Reader reader(file);
    size_t number = 0;
    for (const std::string_view line : LinesOf(text))
        if (std::string what = reader.ReadLine(++number, line); !what.empty())
            errors->push_back({number, std::move(what)});
    if (!reader.Ended()) errors->push_back({number, "the last line is not 'end', the file was cut"});
}

std::string SettingsText(const SettingsFile& file)
{
    std::string text(kHeading);
    const auto add = [&](const FileValue& value) { text += value.name + "=" + host::Escape(value.value) + "\n"; };
    for (const FileValue& value : file.values) add(value);
    for (const FileTable& table : file.tables)
    {
        text += "[" + table.name + "]\n";
        for (const FileRow& row : table.rows)
        {
            text += "[" + table.name + std::string(kRow) + "]\n";
            for (const FileValue& value : row.values) add(value);
        }
    }
    return text + std::string(kEnd) + "\n";
}
}  // namespace kobd::client
