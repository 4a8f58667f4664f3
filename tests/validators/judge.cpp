#include "tests/validators/judge.h"

#include "tests/process_setup.h"

namespace kobd::test
{
namespace
{
constexpr std::string_view kStamp = "\n9999/99/99  99:99:99 ";

// Where the next log line begins, the end of the text without one.
size_t NextLine(const std::string& output, size_t from)
{
    for (size_t at = output.find('\n', from); at != output.npos; at = output.find('\n', at + 1))
        if (LooksLike(output.substr(at, kStamp.size()), std::string(kStamp))) return at;
    return output.size();
}
}  // namespace

Words LogLines(const std::string& output)
{
    Words lines;
    for (size_t at = NextLine(output, 0), end = at; at < output.size(); at = end)
    {
        end = NextLine(output, at + 1);
        const std::string line = output.substr(at + kStamp.size(), end - at - kStamp.size());
        lines.push_back(line.substr(0, line.find('[')) + line.substr(line.find("]: ") + 1));
    }
    return lines;
}

Verdict Judge(std::string_view name, const Arguments& arguments)
{
    OutputCapture capture;
    Verdict verdict = {ExportedFunctions().at(name).call(arguments), {}, {}};
    const std::string begin = std::string(name) + ": ";
    for (const std::string& line : LogLines(capture.Text()))
    {
        const bool own = line.starts_with(begin);
        verdict.lines.push_back(own ? line.substr(begin.size()) : line);
        if (own) verdict.own.push_back(verdict.lines.back());
    }
    return verdict;
}
}  // namespace kobd::test
