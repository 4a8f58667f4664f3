// Reading scenarios.
#include "client/sim/scenario.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "client/dictionary/names.h"

namespace kobd::client
{
namespace
{
constexpr double kLongest = 24.0 * 60 * 60;  // seconds
constexpr size_t kMostSteps = 100000;        // with all rounds
constexpr int kMostRounds = 10000;
constexpr char kTimeForm[] = "a time such as 500ms, 5s, 2m or 1h, one day at most";

// A number in decimal digits, after a minus sign where `negative`; with its digits behind the point.
std::optional<double> ReadDecimal(const std::string& text, bool negative, int* decimals)
{
    const size_t start = negative && text.starts_with('-') ? 1 : 0;
    const size_t point = text.find('.', start);
    const std::string digits = text.substr(start, point - start);
    const std::string behind = point == text.npos ? "0" : text.substr(point + 1);
    constexpr size_t kDigitsMost = 15;  // that a double holds
    if (digits.empty() || behind.empty() || (digits + behind).find_first_not_of("0123456789") != text.npos ||
        digits.size() + behind.size() > kDigitsMost)
        return {};
    *decimals = point == text.npos ? 0 : static_cast<int>(behind.size());
    return strtod(text.c_str(), nullptr);
}

std::optional<double> ReadTime(const std::string& text)
{
    static constexpr std::pair<const char*, double> kUnits[] = {{"ms", 0.001}, {"s", 1}, {"m", 60}, {"h", 3600}};
    const size_t unit_at = text.find_first_not_of("0123456789.");
    if (unit_at == text.npos) return {};
    int decimals = 0;
    const auto number = ReadDecimal(text.substr(0, unit_at), false, &decimals);
    const auto unit = std::ranges::find(kUnits, text.substr(unit_at), [](const auto& one) { return one.first; });
    if (!number || unit == std::end(kUnits) || *number * unit->second > kLongest) return {};
    return *number * unit->second;
}

Failure ReadCourse(const std::string& name, const std::string& range, Course* course)
{
    if (Failure failure = CheckSimValue(name, "")) return failure;
    const size_t dots = range.find("..", 1);
    int decimals[2] = {};
    const auto from = dots == range.npos ? std::nullopt : ReadDecimal(range.substr(0, dots), true, &decimals[0]);
    const auto to = dots == range.npos ? std::nullopt : ReadDecimal(range.substr(dots + 2), true, &decimals[1]);
    if (!from || !to) return {kWrongUse, "over takes FROM..TO such as -70..-120, not '" + range + "'"};
    *course = {name, *from, *to, std::max(decimals[0], decimals[1])};
    return {};
}

Failure ReadOver(const Words& words, ScenarioStep* step)
{
    const auto time = words.size() > 1 ? ReadTime(words[1]) : std::nullopt;
    if (!time || words.size() < 4 || words.size() % 2 != 0)
        return {kWrongUse, std::string("over takes ") + kTimeForm + ", and NAME FROM..TO"};
    step->lasts = *time;
    for (size_t i = 2; i < words.size(); i += 2)
    {
        Course course;
        if (Failure failure = ReadCourse(words[i], words[i + 1], &course)) return failure;
        step->courses.push_back(std::move(course));
    }
    return {};
}

Failure ReadWait(const Words& words, ScenarioStep* step)
{
    const auto time = words.size() == 2 ? ReadTime(words[1]) : std::nullopt;
    if (!time) return {kWrongUse, std::string("wait takes ") + kTimeForm};
    step->lasts = *time;
    return {};
}

Failure ReadEvent(const Words& words, ScenarioStep* step)
{
    if (words.size() < 2 || words.size() > 3) return {kWrongUse, "event takes NAME and perhaps a text"};
    if (words.size() == 3) step->event_text = words[2];
    if (Failure failure = FindEvent(words[1], &step->event)) return failure;
    return CheckEventText(*step->event, step->event_text);
}

Failure ReadStep(const CommandLine& line, ScenarioStep* step)
{
    static constexpr std::pair<const char*, Failure (*)(const Words&, ScenarioStep*)> kSteps[] = {
        {"wait", ReadWait}, {"over", ReadOver}, {"event", ReadEvent}};
    for (const auto& [name, read] : kSteps)
    {
        if (line.words[0] != name) continue;
        if (!line.own_options.empty()) return {kWrongUse, line.words[0] + " takes no " + line.own_options[0]};
        return read(line.words, step);
    }
    const Words known = {"at", "over", "event", "wait", "repeat", "end", "set", "row", "fail", "slow", "clear"};
    if (std::ranges::find(known, line.words[0]) == known.end())
        return {kWrongUse, "there is no step '" + line.words[0] + "'" + DidYouMean(line.words[0], known) +
                               ", the steps are " + Joined(known)};
    step->sim.emplace();
    return ReadSimStep(line, &*step->sim);
}

// Reads line after line; `now` is the time at which the next step begins.
class Reader
{
public:
    Reader(Scenario* scenario, LineErrors* errors) : scenario_(scenario), errors_(errors) {}

    void Read(size_t number, std::string_view text)
    {
        Words words;
        CommandLine line;
        Failure failure = SplitLine(text, &words);
        if (!failure) failure = ReadCommandLine(words, &line);
        if (!failure && line.words.empty() && line.own_options.empty()) return;
        if (!failure && line.words.empty()) failure = {kWrongUse, "a line begins with a step"};
        if (!failure) failure = ReadLine(number, words, &line);
        if (failure) errors_->emplace(number, failure.what);
    }

    void Finish()
    {
        for (const Round& round : rounds_) errors_->emplace(round.line, "this repeat has no end");
        scenario_->lasts = now_;
    }

private:
    struct Round
    {
        size_t line;
        int rounds;
        size_t first;  // step
        double start;
    };

    Failure ReadLine(size_t number, const Words& written, CommandLine* line)
    {
        Words& words = line->words;
        if (words[0] == "repeat") return BeginRounds(number, words);
        if (words[0] == "end") return EndRounds(words);
        const bool at = words[0] == "at";
        if (at)
            if (Failure failure = GoTo(words)) return failure;
        if (at) words.erase(words.begin(), words.begin() + 2);
        ScenarioStep step = {number, Joined({written.begin() + (at ? 2 : 0), written.end()}, " ")};
        if (Failure failure = ReadStep(*line, &step)) return failure;
        step.at = now_;
        now_ += step.lasts;
        scenario_->steps.push_back(std::move(step));
        return scenario_->steps.size() <= kMostSteps ? Failure() : TooMany();
    }

    Failure GoTo(const Words& words)
    {
        const auto time = words.size() > 2 ? ReadTime(words[1]) : std::nullopt;
        if (!time || words[2] == "repeat" || words[2] == "end" || words[2] == "at")
            return {kWrongUse, std::string("at takes ") + kTimeForm + ", and a step"};
        const double then = (rounds_.empty() ? 0 : rounds_.back().start) + *time;
        constexpr double kSlack = 1e-6;
        if (then < now_ - kSlack) return {kWrongUse, "at " + words[1] + " is over when the steps before it are done"};
        now_ = std::max(now_, then);
        return {};
    }

    Failure BeginRounds(size_t number, const Words& words)
    {
        const auto rounds = words.size() == 2 ? ReadInteger(words[1], 1, kMostRounds) : std::nullopt;
        rounds_.push_back({number, static_cast<int>(rounds.value_or(1)), scenario_->steps.size(), now_});
        if (rounds) return {};
        return {kWrongUse, "repeat takes a number from 1 to " + std::to_string(kMostRounds)};
    }

    Failure EndRounds(const Words& words)
    {
        if (words.size() != 1 || rounds_.empty())
            return {kWrongUse, words.size() != 1 ? "end takes no words" : "there is no repeat before this end"};
        const Round round = rounds_.back();
        rounds_.pop_back();
        const double lasts = now_ - round.start;
        auto& steps = scenario_->steps;
        const size_t end = steps.size();
        if ((end - round.first) * static_cast<size_t>(round.rounds) > kMostSteps - round.first) return TooMany();
        for (int number = 1; number < round.rounds; ++number)
            for (size_t i = round.first; i < end; ++i)
            {
                steps.push_back(steps[i]);
                steps.back().at += lasts * number;
            }
        now_ = round.start + lasts * round.rounds;
        return {};
    }

    static Failure TooMany()
    {
        return {kWrongUse, "with all rounds these are more than " + std::to_string(kMostSteps) + " steps"};
    }

    Scenario* scenario_;
    LineErrors* errors_;
    std::vector<Round> rounds_ = {};
    double now_ = 0;
};

// Where shipped scenarios may be, seen from the program: beside it in a build folder, else where it was installed.
std::vector<std::filesystem::path> Folders()
{
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::filesystem::path folder = program.parent_path();
    return {folder / "scenarios", folder / KOBD_SCENARIO_FOLDER};
}

std::string SummaryOf(const std::string& path)
{
    InputFile file;
    if (ReadInput(path, &file)) return "";
    for (const std::string_view line : LinesOf(file.text))
        if (line.starts_with("# ")) return std::string(line.substr(2));
    return "";
}
}  // namespace

std::string Course::At(double share) const
{
    char text[64];
    double value = from + (to - from) * share;
    if (std::abs(value) < 0.5 * std::pow(10, -decimals)) value = 0;  // without "-0"
    snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

void ReadScenario(const InputFile& file, Scenario* scenario, LineErrors* errors)
{
    scenario->name = file.name;
    Reader reader(scenario, errors);
    size_t number = 0;
    for (const std::string_view line : LinesOf(file.text)) reader.Read(++number, line);
    reader.Finish();
    if (errors->empty() && scenario->steps.empty()) errors->emplace(std::max<size_t>(number, 1), "there is no step");
}

std::vector<ShippedScenario> ShippedScenarios()
{
    std::vector<ShippedScenario> shipped;
    for (const std::filesystem::path& folder : Folders())
    {
        std::error_code error;
        for (const auto& entry : std::filesystem::directory_iterator(folder, error))
            shipped.push_back({entry.path().filename(), entry.path(), SummaryOf(entry.path())});
        if (!shipped.empty()) break;
    }
    std::ranges::sort(shipped, {}, &ShippedScenario::name);
    return shipped;
}

Failure FindScenario(const std::string& name, InputFile* file)
{
    if (name == "-" || name.find('/') != name.npos || access(name.c_str(), F_OK) == 0) return ReadInput(name, file);
    const auto shipped = ShippedScenarios();
    if (const auto* one = FindNamed(shipped, name)) return ReadInput(one->path, file);
    const Words names = AllNames(shipped);
    return {kWrongUse, "there is no file and no scenario " + name + DidYouMean(name, names) +
                           (names.empty() ? "" : ", the scenarios are " + Joined(names))};
}
}  // namespace kobd::client
