#include "tests/validators/judge.h"

#include <gtest/gtest.h>

#include "tests/process_setup.h"

namespace kobd::test
{
namespace
{
constexpr std::string_view kStamp = "\n9999/99/99  99:99:99 ";

// Where the next log line begins, the end of the text without one.
size_t NextLine(const std::string& output, size_t from)
{
    for (; from + kStamp.size() <= output.size(); ++from)
        if (LooksLike(output.substr(from, kStamp.size()), std::string(kStamp))) return from;
    return output.size();
}

// The messages of a log, each with its function's name unless that is `own`.
std::string Messages(const std::string& output, const std::string& own)
{
    std::string messages;
    for (size_t line = NextLine(output, 0); line < output.size();)
    {
        const size_t next = NextLine(output, line + 1);
        const size_t begin = line + kStamp.size();
        const std::string text = output.substr(begin, next - begin);
        const size_t bracket = text.find('[');
        const std::string function = text.substr(0, bracket);
        messages += "|" + (function == own ? "" : function + ": ") + text.substr(text.find("]: ", bracket) + 3);
        line = next;
    }
    return messages;
}
}  // namespace

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
    const int code = check.function(exact.data());
    return std::to_string(code) + Messages(output.Text(), check.name);
}

void ExpectVerdicts(const Check& check, const std::vector<TextCase>& cases)
{
    for (const TextCase& c : cases)
        EXPECT_EQ(Judge(check, c.text), c.verdict) << check.name << ", " << c.why << ": " << c.text.substr(0, 80);
    OutputCapture output;
    EXPECT_EQ(check.function(nullptr), 2) << check.name << ", no text";
}
}  // namespace kobd::test
