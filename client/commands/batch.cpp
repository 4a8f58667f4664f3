// kobctl batch FILE: runs the commands of a file, one a line.
#include <utility>

#include "client/arguments/command_line.h"
#include "client/arguments/input_file.h"
#include "client/commands/commands.h"

namespace kobd::client
{
namespace
{
struct Line
{
    size_t number;
    Words words;
};

// Splits the whole text into commands. The first one runs only when no line has a mistake in its quoting.
std::vector<Line> ReadLines(const InputFile& file, LineErrors* errors)
{
    std::vector<Line> lines;
    size_t number = 0;
    for (const std::string_view text : LinesOf(file.text))
    {
        Line line = {++number, {}};
        if (text.find('\0') != text.npos)
            errors->emplace(number, "a line cannot hold a zero byte");
        else if (const Failure failure = SplitLine(text, &line.words))
            errors->emplace(number, failure.what);
        else if (!line.words.empty() && line.words[0] == "batch")
            errors->emplace(number, "a batch cannot run a batch");
        if (!line.words.empty()) lines.push_back(std::move(line));
    }
    return lines;
}
}  // namespace

Outcome CommandBatch(const Options& options, const Words& words)
{
    InputFile file;
    if (Failure failure = ReadInput(words[0], &file).In("batch")) return failure;
    LineErrors errors;
    const std::vector<Line> lines = ReadLines(file, &errors);
    Outcome outcome;
    outcome.notes = LineTexts(file, errors);
    outcome.particulars = MistakesJson(errors);
    if (!errors.empty())
        outcome.failure = {kWrongUse,
                           "batch: " + file.name + " has " + Counted(errors.size(), "mistake") + "; nothing was run"};
    for (size_t i = 0; errors.empty() && outcome.status == 0 && i < lines.size(); ++i)
    {
        outcome.status = RunCommand(lines[i].words, options);
        if (outcome.status == 0) continue;
        const size_t left = lines.size() - i - 1;
        outcome.notes.push_back(file.name + ":" + std::to_string(lines[i].number) + ": this command ended with " +
                                std::to_string(outcome.status) +
                                (left == 0 ? "" : "; " + Counted(left, "command") + " after it did not run"));
    }
    return outcome;
}
}  // namespace kobd::client
