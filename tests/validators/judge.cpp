#include "tests/validators/judge.h"

#include "tests/process_setup.h"

namespace kobd::test
{
namespace
{
constexpr std::string_view kStamp = "\n9999/99/99  99:99:99 ";

// Where the next log line begins, the end of the text without one. A message may have line ends of its own.
size_t NextLine(const std::string& output, size_t from)
{
    for (size_t at = output.find('\n', from); at != output.npos; at = output.find('\n', at + 1))
        if (LooksLike(output.substr(at, kStamp.size()), std::string(kStamp))) return at;
    return output.size();
}
}  // namespace

Verdict Judge(std::string_view name, const Arguments& arguments)
{
    OutputCapture capture;
    Verdict verdict = {ExportedFunctions().at(name).call(arguments), {}, {}};
    const std::string output = capture.Text();
    for (size_t at = NextLine(output, 0), end = at; at < output.size(); at = end)
    {
        end = NextLine(output, at + 1);
        const std::string line = output.substr(at + kStamp.size(), end - at - kStamp.size());
        const std::string function = line.substr(0, line.find('['));
        const std::string message = line.substr(line.find("]: ") + 3);
        verdict.lines.push_back(function == name ? message : function + ": " + message);
        if (function == name) verdict.own.push_back(message);
    }
    return verdict;
}
}  // namespace kobd::test
