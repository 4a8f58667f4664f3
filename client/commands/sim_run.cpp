// kobctl sim run [FILE]: plays a scenario.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <map>

#include "client/commands/commands.h"
#include "client/output/terminal.h"
#include "client/sim/scenario.h"

namespace kobd::client
{
namespace
{
constexpr double kSendEvery = 0.25;  // seconds between two values of over
constexpr size_t kNameWidth = 21;
constexpr double kLookEvery = 0.1;  // for a terminal to show the time, and for a reader that is gone

double Monotonic()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

// Plays the steps of one scenario in their time.
class Player
{
public:
    Player(const Options& options, const Scenario& scenario)
        : options_(options), scenario_(scenario), terminal_(!options.json && MovesCursor())
    {
    }

    Failure Play()
    {
        start_ = Monotonic();
        for (number_ = 0; number_ < scenario_.steps.size() && !IsStopped(); ++number_)
        {
            const ScenarioStep& step = scenario_.steps[number_];
            if (!WaitUntil(step.at)) break;
            Show(step);
            if (Failure failure = Do(step))
                return {failure.code, scenario_.name + ":" + std::to_string(step.line) + ": " + failure.what};
        }
        WaitUntil(scenario_.lasts);
        if (terminal_) fputs("\n", stdout);
        return {};
    }

    bool IsStopped() const { return Interrupted() || closed_; }
    size_t Line() const { return scenario_.steps[std::min(number_, scenario_.steps.size() - 1)].line; }

private:
    double Now() const { return (Monotonic() - start_) * options_.speed; }

    // False when it was stopped before.
    bool WaitUntil(double time)
    {
        for (double left; (left = (time - Now()) / options_.speed) > 0 && !IsStopped();)
        {
            const double part = std::min(left, kLookEvery);
            const timespec pause = {0, static_cast<long>(part * 1e9)};
            nanosleep(&pause, nullptr);
            if (terminal_) ShowTime();
            closed_ = OutputClosed();
        }
        return !IsStopped();
    }

    void Show(const ScenarioStep& step)
    {
        char time[32];
        snprintf(time, sizeof time, "%7.1fs  ", step.at);
        text_ = step.text;
        if (terminal_) return ShowTime();
        (void)Print(options_, {{{"at", step.at}, {"line", step.line}, {"step", step.text}},
                               time + ShownInLine(step.text) + "\n"});
        fflush(stdout);
    }

    // The one line of a terminal, written over itself.
    void ShowTime()
    {
        constexpr size_t kBar = 20;
        const double now = std::min(Now(), scenario_.lasts);
        const double share = scenario_.lasts > 0 ? now / scenario_.lasts : 1;
        std::string bar(static_cast<size_t>(share * kBar), '#');
        bar.resize(kBar, '.');
        char head[96];
        snprintf(head, sizeof head, "[%s] %.1f of %.1f s, step %zu of %zu  ", bar.c_str(), now, scenario_.lasts,
                 std::min(number_ + 1, scenario_.steps.size()), scenario_.steps.size());
        const std::string line = (head + Escaped(text_)).substr(0, DisplayWidth() - 1);
        printf("\r\x1b[K%s", line.c_str());
        fflush(stdout);
    }

    Failure Do(const ScenarioStep& step)
    {
        if (step.sim) return DoSim(*step.sim);
        if (step.event != nullptr) return SendEvent(options_, *step.event, step.event_text);
        if (step.courses.empty()) return {};  // wait: the next step begins after it
        for (double share = 0; !IsStopped();)
        {
            Assignments pairs;
            for (const Course& course : step.courses) pairs.push_back({course.name, course.At(share)});
            if (Failure failure = SendSimStep(options_, {KOBD_HOST_SIM_SET, SetItems(pairs)})) return failure;
            if (share >= 1) break;
            WaitUntil(std::min(Now() + kSendEvery * options_.speed, step.at + step.lasts));
            share = step.lasts > 0 ? std::min((Now() - step.at) / step.lasts, 1.0) : 1;
        }
        return {};
    }

    // Remembers the rows that are added, and puts the index of the last one in its place.
    Failure DoSim(SimStep step)
    {
        const bool row = !step.items.empty() && step.items[0].tag == KOBD_TAG_TABLE_NAME;
        std::vector<int32_t>* added = row ? &added_[step.items[0].text] : nullptr;
        if (step.last && added->empty()) return {kWrongUse, "no row was added that is still there"};
        if (step.last) step.items[1].number = added->back();
        if (step.last && step.control == KOBD_HOST_SIM_ROW_DEL) added->pop_back();
        Items answer;
        const Failure failure = SendSimStep(options_, step, &answer);
        if (!failure && step.control == KOBD_HOST_SIM_ROW_ADD && !answer.empty() && answer[0].number)
            added->push_back(*answer[0].number);
        if (step.control == KOBD_HOST_SIM_CLEAR) added_.clear();
        return failure;
    }

    const Options& options_;
    const Scenario& scenario_;
    const bool terminal_;
    double start_ = 0;
    size_t number_ = 0;
    bool closed_ = false;
    std::string text_ = {};
    std::map<std::string, std::vector<int32_t>> added_ = {};  // indexes of rows by table
};

Outcome ListScenarios()
{
    const auto shipped = ShippedScenarios();
    if (shipped.empty()) return Failure{1, "sim run: no scenarios are installed; give the path of a file"};
    Outcome outcome(Json::array(), "");
    for (const ShippedScenario& one : shipped)
    {
        outcome.data.push_back({{"name", one.name}, {"summary", one.summary}, {"path", one.path}});
        std::string name = one.name;
        name.resize(std::max<size_t>(name.size() + 2, kNameWidth), ' ');
        outcome.text += name + one.summary + "\n";
    }
    return outcome;
}

// Networks as they are, by name.
Failure ReadNetworks(const Options& options, Values* networks)
{
    std::vector<SimLine> lines;
    if (Failure failure = ReadSimLines(options, &lines)) return failure;
    for (const SimLine& line : lines)
        if (line.what == "network") (*networks)[line.name] = line.how;
    return {};
}

// Ends what a scenario that stopped half way has left, its networks too.
Failure CleanUp(const Options& options, const Values& before)
{
    if (Failure failure = SendSimStep(options, {KOBD_HOST_SIM_CLEAR})) return failure;
    Values now;
    if (Failure failure = ReadNetworks(options, &now)) return failure;
    for (const auto& [network, was] : before)
    {
        if (now[network] == was) continue;
        const NetworkEvent* event = nullptr;
        const std::string name =
            (network == "cellular" ? "Network" : "Ethernet") + std::string(was == "up" ? "Up" : "Down");
        if (Failure failure = FindEvent(name, &event)) return failure;
        if (Failure failure = SendEvent(options, *event, "")) return failure;
    }
    return {};
}
}  // namespace

Outcome SimRun(const Options& options, const Words& words)
{
    if (words.empty()) return ListScenarios();
    InputFile file;
    if (Failure failure = FindScenario(words[0], &file)) return failure.In("sim run");
    Scenario scenario;
    LineErrors errors;
    ReadScenario(file, &scenario, &errors);
    Outcome outcome;
    outcome.notes = LineTexts(file, errors);
    outcome.particulars = MistakesJson(errors);
    if (!errors.empty())
    {
        outcome.failure = {kWrongUse,
                           "sim run: " + file.name + " has " + Counted(errors.size(), "mistake") + "; nothing was run"};
        return outcome;
    }
    Values before;
    if (Failure failure = ReadNetworks(options, &before)) return failure;
    CatchInterrupts();
    Player player(options, scenario);
    outcome.failure = player.Play();
    if (!outcome.failure && !player.IsStopped()) return outcome;
    if (!outcome.failure)
        outcome.failure = {1, "sim run: stopped in line " + std::to_string(player.Line()) + " of " + file.name};
    const Failure left = CleanUp(options, before);
    outcome.failure.what +=
        left ? "; what it has simulated could not be cleared: " + left.what : "; what it has simulated is cleared";
    return outcome;
}
}  // namespace kobd::client
