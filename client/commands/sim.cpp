// kobctl sim: what the imitated router is made to show, refuse and delay.
#include "client/commands/commands.h"
#include "client/output/terminal.h"
#include "client/sim/step.h"

namespace kobd::client
{
namespace
{
// The command's own words behind its name.
CommandLine LineOf(const char* verb, const Options& options, const Words& words)
{
    CommandLine line = {options, {verb}};
    line.words.insert(line.words.end(), words.begin(), words.end());
    return line;
}

Failure Send(const char* verb, const Options& options, const Words& words, Items* answer = nullptr)
{
    SimStep step = {};
    if (Failure failure = ReadSimStep(LineOf(verb, options, words), &step)) return failure;
    if (step.last) return {kWrongUse, "'last' is for scenarios: give the index of the row"};
    return SendSimStep(options, step, answer);
}

// The two numbers of a line "17 2": code or milliseconds, and times.
struct Numbers
{
    int amount = 0;
    int times = 0;
};

Numbers NumbersOf(const std::string& how)
{
    const size_t blank = how.find(' ');
    const auto amount = ReadInteger(how.substr(0, blank), INT32_MIN, INT32_MAX);
    const auto times = ReadInteger(blank == how.npos ? "" : how.substr(blank + 1), 0, INT32_MAX);
    return {static_cast<int>(amount.value_or(0)), static_cast<int>(times.value_or(0))};
}

std::string Often(int times) { return times == 0 ? "always" : times == 1 ? "once" : std::to_string(times) + " times"; }

// The object, table or network by name; nothing of the commit, which has none.
Json NamedJson(const std::string& name)
{
    return name.empty() ? Json::object() : Json{{FindTable(name) != nullptr ? "table" : "name", name}};
}

// The line for a person, and its data.
std::string LineText(const SimLine& line, Json* data)
{
    *data = NamedJson(line.name);
    (*data)["what"] = line.what;
    if (line.what == "value" || line.what == "network" || line.what == "row")
    {
        const std::string how = ShownInLine(line.how);
        const size_t blank = line.how.find(' ');  // of a row: "8 added"
        if (line.what != "row") (*data)["value"] = ValueJson(kobd_describe(line.name.c_str()), line.how);
        if (line.what == "row") (*data)["index"] = NumberJson(line.how.substr(0, blank));
        if (line.what == "row") (*data)["row"] = line.how.substr(blank + 1);
        if (line.what == "value") return line.name + "=" + how;
        return line.name + " " + (line.what == "row" ? "row " : "network is ") + how;
    }
    const auto [amount, times] = NumbersOf(line.how);
    const bool slow = line.what == "slow";
    (*data)[slow ? "milliseconds" : "code"] = amount;
    (*data)["times"] = times;
    const std::string which = line.name.empty() ? line.what : line.name + (slow ? "" : " " + line.what);
    if (slow) return which + " takes " + std::to_string(amount) + " ms, " + Often(times);
    return which + " fails, " + CodeText(amount) + ", " + Often(times);
}
}  // namespace

Outcome SimSet(const Options& options, const Words& words)
{
    Assignments pairs;
    if (Failure failure = Send("set", options, words)) return failure;
    if (Failure failure = ReadAssignments("sim set", words, &pairs)) return failure;
    return {{{"set", ValuesJson(pairs)}}, ""};
}

Outcome SimFail(const Options& options, const Words& words)
{
    if (Failure failure = Send("fail", options, words)) return failure;
    Json data = NamedJson(words.size() > 1 ? words[0] : "");
    data.update({{"what", words.back()}, {"code", options.code}, {"times", options.times}});
    return {std::move(data), ""};
}

Outcome SimSlow(const Options& options, const Words& words)
{
    if (Failure failure = Send("slow", options, words)) return failure;
    Json data = NamedJson(words[0]);
    data.update({{"what", "slow"}, {"milliseconds", NumberJson(words[1])}, {"times", options.times}});
    return {std::move(data), ""};
}

Outcome SimClear(const Options& options, const Words& words)
{
    if (Failure failure = Send("clear", options, words)) return failure;
    return {{{"cleared", true}}, ""};
}

Outcome SimRow(const Options& options, const Words& words)
{
    Items answer;
    if (Failure failure = Send("row", options, words, &answer)) return failure;
    if (answer.empty() || !answer[0].number) return {{{"table", words[0]}, {"index", NumberJson(words[2])}}, ""};
    return {{{"table", words[0]}, {"index", *answer[0].number}}, std::to_string(*answer[0].number) + "\n"};
}

Outcome SimList(const Options& options, const Words&)
{
    std::vector<SimLine> lines;
    if (Failure failure = ReadSimLines(options, &lines)) return failure;
    Outcome outcome(Json::array(), "");
    for (const SimLine& line : lines)
    {
        Json data;
        outcome.text += LineText(line, &data) + "\n";
        outcome.data.push_back(std::move(data));
    }
    return outcome;
}
}  // namespace kobd::client
