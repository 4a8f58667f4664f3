#include "tests/validators/codes.h"

#include <gtest/gtest.h>

#include "tests/process_setup.h"

namespace kobd::test
{
void ExpectCodes(const Check& check, const std::vector<CodeCase>& cases)
{
    for (const CodeCase& c : cases)
    {
        const std::vector<char> text = ExactText(c.text);
        OutputCapture output;
        EXPECT_EQ(check.function(text.data()), c.code) << check.name << "(" << c.text.substr(0, 80) << "): " << c.why;
    }
}

void ExpectLogs(const std::vector<LogCase>& cases)
{
    for (const LogCase& c : cases) EXPECT_EQ(Judge(c.check, c.text), c.log) << c.check.name << "(" << c.text << ")";
}
}  // namespace kobd::test
