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

std::vector<std::string> LogLines(const std::string& output)
{
    std::vector<std::string> lines;
    for (size_t at = NextLine(output, 0); at < output.size();)
    {
        const size_t end = NextLine(output, at + 1);
        const std::string line = output.substr(at + kStamp.size(), end - at - kStamp.size());
        const size_t bracket = line.find('[');
        lines.push_back(line.substr(0, bracket) + line.substr(line.find("]: ", bracket) + 1));
        at = end;
    }
    return lines;
}

std::vector<char> ExactText(std::string_view text)
{
    std::vector<char> block(text.begin(), text.end());
    block.push_back('\0');
    block.shrink_to_fit();
    return block;
}

std::string Judge(const Check& check, std::string_view text)
{
    const std::vector<char> exact = ExactText(text);
    OutputCapture output;
    std::string verdict = std::to_string(check.function(exact.data()));
    const std::string own = std::string(check.name) + ": ";
    for (const std::string& line : LogLines(output.Text()))
        verdict += "|" + (line.starts_with(own) ? line.substr(own.size()) : line);
    return verdict;
}
}  // namespace kobd::test
