// kobctl batch FILE: a command a line, as one would type them behind "kobctl".
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "client/arguments/command_line.h"
#include "client/arguments/input_file.h"
#include "client/commands/run_command.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
struct Line
{
    size_t number;
    Words words;
};

// Parts the whole text into commands before the first runs, so that a slip in quoting runs nothing.
// 0, or the exit status after an error line.
int ReadLines(const Options& options, const InputFile& file, std::vector<Line>* lines)
{
    size_t number = 0;
    int status = 0;
    for (const std::string_view text : LinesOf(file.text))
    {
        Line line = {++number, {}};
        std::string error = SplitLine(text, &line.words);
        if (error.empty() && !line.words.empty() && line.words[0] == "batch") error = "a batch runs no batch";
        if (!error.empty())
        {
            Fail(options, kInvalidArgument, file.name + ":" + std::to_string(number) + ": " + error);
            status = 2;
        }
        if (!line.words.empty()) lines->push_back(std::move(line));
    }
    return status;
}
}  // namespace

int CommandBatch(const Options& options, const Words& words)
{
    InputFile file;
    if (const std::string error = ReadInput(words[0], &file); !error.empty())
        return Fail(options, kSystemError, "batch: " + error);
    std::vector<Line> lines;
    if (const int status = ReadLines(options, file, &lines)) return status;
    for (const Line& line : lines)
    {
        const int status = RunCommand(line.words, options);
        if (status == 0) continue;
        const auto left = static_cast<size_t>(&lines.back() - &line);
        const std::string rest = left == 0 ? "" : ", " + std::to_string(left) + " after it not run";
        SayError(file.name + ":" + std::to_string(line.number) + ": this command failed" + rest);
        return status;
    }
    return 0;
}
}  // namespace kobd::client
