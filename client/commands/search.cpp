// kobctl search WORD...: names whose meaning, unit or name has all words, the best first. From the dictionary alone.
#include <algorithm>
#include <cctype>

#include "client/commands/commands.h"
#include "client/library/kobd_client.h"
#include "client/output/terminal.h"

namespace kobd::client
{
namespace
{
struct Hit
{
    std::string name;  // of an object or table; of a table and its column
    const char* kind;
    const char* meaning;  // may be nullptr, like the unit
    const char* unit;
    int score;
    bool lacks_one = false;  // of the words
};

std::string InLowerCase(std::string text)
{
    for (char& letter : text) letter = static_cast<char>(tolower(static_cast<unsigned char>(letter)));
    return text;
}

// The name with blanks between its parts: "web Http Port".
std::string Parted(const std::string& name)
{
    std::string parted;
    for (const char letter : name)
    {
        const bool begins = isupper(static_cast<unsigned char>(letter)) != 0;
        if (begins && !parted.empty() && isupper(static_cast<unsigned char>(parted.back())) == 0) parted += ' ';
        parted += letter;
    }
    return parted;
}

bool IsLetter(char letter) { return isalnum(static_cast<unsigned char>(letter)) != 0; }

// How well the word is found in the text: more for a whole word, and for the start of one. 0: not at all.
int ScoreIn(const std::string& text, const std::string& word)
{
    int best = 0;
    for (size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1))
    {
        const bool starts = at == 0 || !IsLetter(text[at - 1]);
        const bool ends = at + word.size() == text.size() || !IsLetter(text[at + word.size()]);
        best = std::max(best, 1 + (starts ? 1 : 0) + (starts && ends ? 2 : 0));
    }
    return best;
}

// What people call it, and what the dictionary does.
std::string InOurWords(const std::string& word)
{
    for (const auto& [theirs, ours] : {std::pair("wlan", "wifi"), {"wi-fi", "wifi"}})
        if (word == theirs) return ours;
    return word;
}

// Whether the word only joins others: "ip address of the lan".
bool IsSmall(const std::string& word)
{
    constexpr std::string_view kSmall[] = {"a", "an", "and", "for", "in", "is", "my", "of", "on", "the", "to", "what"};
    return std::ranges::find(kSmall, word) != std::end(kSmall);
}

// What is searched, in lower case.
struct Texts
{
    std::string name = {};
    std::string parts = {};  // of the name
    std::string meaning = {};
    std::string unit = {};
    std::string table = {};  // what the table of a column means
};

// A word in the name weighs more than one in the meaning. 0: not found.
int ScoreOf(const Texts& texts, const std::string& word)
{
    constexpr int kInName = 3;
    constexpr int kWholeName = 20;
    const int in_name = std::max(ScoreIn(texts.name, word), ScoreIn(texts.parts, word));
    const int score = kInName * in_name + ScoreIn(texts.meaning, word) + ScoreIn(texts.unit, word);
    return score + (texts.name == word ? kWholeName : 0);
}

// The sum over the words, and how many of them are found nowhere. 0 when all are found only in what the table means.
std::pair<int, size_t> Score(const Texts& texts, const Words& words)
{
    int sum = 0;
    size_t lacking = 0;
    for (const std::string& word : words)
    {
        const int score = std::max(ScoreOf(texts, word), ScoreOf(texts, InOurWords(word)));
        if (score == 0 && ScoreIn(texts.table, word) == 0) ++lacking;
        sum += score;
    }
    return {sum, lacking};
}

class Search
{
public:
    explicit Search(const Words& words)
    {
        for (const std::string& word : words)
            if (!IsSmall(InLowerCase(word))) words_.push_back(InLowerCase(word));
        if (words_.empty())
            for (const std::string& word : words) words_.push_back(InLowerCase(word));
    }

    // All hits, the best first; those of one score in the order of the dictionary. Where nothing has all words, the
    // best of those that have all but one.
    std::vector<Hit> Run()
    {
        for (size_t i = 0; const kobd_description* object = kobd_object_at(i); ++i)
            if (kobd_describe(object->name) == object) Try(object->name, "object", object->meaning, object->unit);
        for (size_t i = 0; const kobd_table_description* table = kobd_table_at(i); ++i)
        {
            Try(table->name, "table", table->meaning, nullptr);
            for (size_t c = 0; c < table->column_count; ++c)
                Try(std::string(table->name) + " " + table->columns[c]->name, "column", table->columns[c]->meaning,
                    table->columns[c]->unit, table->meaning);
        }
        constexpr size_t kMostLackingOne = 10;
        const bool none = std::ranges::all_of(hits_, &Hit::lacks_one);
        if (!none) std::erase_if(hits_, [](const Hit& hit) { return hit.lacks_one; });
        std::ranges::stable_sort(hits_, std::greater(), &Hit::score);
        if (none) hits_.resize(std::min(hits_.size(), kMostLackingOne));
        return hits_;
    }

private:
    void Try(const std::string& name, const char* kind, const char* meaning, const char* unit,
             const char* table = nullptr)
    {
        const auto lower = [](const char* text) { return InLowerCase(text != nullptr ? text : ""); };
        const Texts texts = {InLowerCase(name), InLowerCase(Parted(name)), lower(meaning), lower(unit), lower(table)};
        const auto [score, lacking] = Score(texts, words_);
        if (score > 0 && lacking <= 1) hits_.push_back({name, kind, meaning, unit, score, lacking == 1});
    }

    Words words_ = {};
    std::vector<Hit> hits_ = {};
};
}  // namespace

Json MeaningJson(const std::string& name, const char* kind, const char* meaning, const char* unit)
{
    const size_t blank = name.find(' ');  // of a column
    Json json = blank == name.npos ? Json{{"name", name}}
                                   : Json{{"table", name.substr(0, blank)}, {"column", name.substr(blank + 1)}};
    json.update(
        {{"kind", kind}, {"meaning", meaning != nullptr ? meaning : ""}, {"unit", unit != nullptr ? unit : ""}});
    return json;
}

std::string MeaningText(const char* meaning, const char* unit)
{
    return std::string(meaning != nullptr ? meaning : "") +
           (unit != nullptr ? std::string(" Unit: ") + unit + "." : "");
}

Outcome CommandSearch(const Options& options, const Words& words)
{
    if (std::ranges::find(words, "") != words.end()) return Failure{kWrongUse, "search takes words, and one is empty"};
    std::vector<Hit> hits = Search(words).Run();
    if (options.json)
        std::erase_if(hits, [](const Hit& hit) { return hit.lacks_one; });  // a program asked for all words
    constexpr size_t kMostAtTerminal = 20;
    const size_t found = hits.size();
    const bool short_list = options.count == 0 && !options.json && isatty(STDOUT_FILENO) != 0;
    const size_t most = short_list ? kMostAtTerminal : static_cast<size_t>(options.count);  // 0: all
    if (most != 0) hits.resize(std::min(found, most));
    Outcome outcome(Json::array(), "");
    Grid grid = {{"name", "meaning"}, {false, false}, {}};
    for (const Hit& hit : hits)
    {
        outcome.data.push_back(MeaningJson(hit.name, hit.kind, hit.meaning, hit.unit));
        grid.lines.push_back({hit.name, MeaningText(hit.meaning, hit.unit)});
    }
    if (!hits.empty()) outcome.text = TableText(grid);
    if (short_list && hits.size() < found)
        outcome.text +=
            "and " + std::to_string(found - hits.size()) + " more, which --count " + std::to_string(found) + " shows\n";
    if (hits.empty() || hits.front().lacks_one)
        outcome.notes.push_back("no name, meaning or unit has '" + Joined(words, "' and '") + "'" +
                                (hits.empty() ? "" : "; these have all words but one"));
    return outcome;
}
}  // namespace kobd::client
