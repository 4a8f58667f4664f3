// Reads case files: words, quotes, escapes and repetitions.
#include "tests/case_lines.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace kobd::test
{
namespace
{
class Reader
{
public:
    explicit Reader(std::string_view line) : rest_(line) {}

    // The next token of the line; false at its end or at the reason.
    bool Next(CaseToken* token)
    {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size()));
        if (rest_.empty() || rest_.front() == '#') return false;
        *token = {};
        bool quoted = false;
        const std::string_view begin = rest_;
        while (!rest_.empty() && (quoted || rest_.front() != ' '))
        {
            const bool quote = rest_.front() == '"';
            if (quote) rest_.remove_prefix(1);
            quoted = quoted != quote;
            if (!quote) token->text += Piece();
        }
        const std::string_view raw = begin.substr(0, begin.size() - rest_.size());
        if (raw.size() == 1 && strchr(":>+@|!", raw[0]) != nullptr) token->sign = raw[0];
        token->missing = raw == "NULL";
        return true;
    }

    std::string Why() const { return std::string(rest_.substr(std::min(rest_.find_first_not_of("# "), rest_.size()))); }

private:
    // One character, escape or repetition.
    std::string Piece()
    {
        const char c = Take();
        if (c == '\\') return Escape();
        return c == '{' ? Repetition() : std::string(1, c);
    }

    std::string Escape()
    {
        const char c = Take();
        if (c == 'n') return "\n";
        if (c == 't') return "\t";
        if (c != 'x') return std::string(1, c);
        const std::string digits = {Take(), Take()};
        return std::string(1, static_cast<char>(strtol(digits.c_str(), nullptr, 16)));
    }

    std::string Repetition()
    {
        std::string part;
        while (rest_.front() != '*' || rest_.substr(1).find_first_not_of("0123456789") != rest_.find('}') - 1)
            part += Piece();
        rest_.remove_prefix(1);
        const int times = atoi(std::string(rest_).c_str());
        rest_.remove_prefix(rest_.find('}') + 1);
        std::string text;
        const size_t counter = part.find('#');
        for (int i = 1; i <= times; ++i)
            text += counter == part.npos ? part : std::string(part).replace(counter, 1, std::to_string(i));
        return text;
    }

    char Take()
    {
        const char c = rest_.front();
        rest_.remove_prefix(1);
        return c;
    }

    std::string_view rest_;
};
}  // namespace

std::vector<CaseLine> ReadCases(const std::string& path)
{
    std::vector<CaseLine> lines;
    std::ifstream file(path);
    int number = 0;
    for (std::string text, more; std::getline(file, text);)
    {
        CaseLine line = {++number, {}, {}, {}};
        for (; file.peek() == ' ' && std::getline(file, more); ++number) text += more;
        Reader reader(text);
        for (CaseToken token; reader.Next(&token);) line.tokens.push_back(token);
        if (line.tokens.empty()) continue;
        line.command = line.tokens.front().text;
        line.tokens.erase(line.tokens.begin());
        line.why = reader.Why();
        if (line.command != "include")
            lines.push_back(line);
        else
            for (const CaseLine& included : ReadCases(path.substr(0, path.rfind('/') + 1) + line.tokens.at(0).text))
                lines.push_back(included);
    }
    return lines;
}

std::vector<std::string> CaseFiles(const std::string& folder)
{
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(KOBD_SOURCES "/" + folder))
        if (entry.path().extension() == ".txt") files.push_back(entry.path().stem());
    std::sort(files.begin(), files.end());
    return files;
}

std::pair<std::string, std::string> Split(const std::string& assignment)
{
    const size_t sign = std::min(assignment.find('='), assignment.size());
    return {assignment.substr(0, sign), assignment.substr(std::min(sign + 1, assignment.size()))};
}
}  // namespace kobd::test
