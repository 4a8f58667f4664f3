// What the test programs set up around themselves.
#pragma once

#include <string>

namespace kobd::test
{
// Takes what is written to standard output from construction to Text, which is where log lines go.
class OutputCapture
{
public:
    OutputCapture();
    ~OutputCapture();
    OutputCapture(const OutputCapture&) = delete;
    OutputCapture& operator=(const OutputCapture&) = delete;

    std::string Text() const;

private:
    int file_;
    int before_;
};

std::string FileText(const std::string& path);

// How many files have a path that begins so.
size_t FilesLike(const std::string& path);

// Whether `text` is `pattern`, in which every 9 stands for any digit.
bool LooksLike(const std::string& text, const std::string& pattern);
}  // namespace kobd::test
