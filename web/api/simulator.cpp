// The simulator of the imitated router, in kobctl's words.
#include "web/api/bus.h"
#include "web/api/describe.h"
#include "web/api/kobctl.h"
#include "web/api/routes.h"
#include "web/api/services.h"

namespace kobd::web
{
namespace
{
Json Sim(const Call& call, Words words)
{
    words.insert(words.begin(), "sim");
    return RunKobctl(call.services.kobctl, std::move(words));
}

std::string TextIn(const Call& call, const char* key)
{
    const Json value = call.body.value(key, Json());
    if (!value.is_string()) throw Problem{422, std::string("The body lacks the text \"") + key + "\"."};
    return value.get<std::string>();
}

std::string IntegerIn(const Call& call, const char* key)
{
    const Json value = call.body.value(key, Json());
    if (!value.is_number_integer()) throw Problem{422, std::string("The body lacks the integer \"") + key + "\"."};
    return value.dump();
}

// --KEY N, when the body has it.
void AddOption(const Call& call, const char* key, Words* words)
{
    if (!call.body.contains(key)) return;
    words->push_back(std::string("--") + key);
    words->push_back(IntegerIn(call, key));
}

// NAME=VALUE for each member of the body.
void AddPairs(const Call& call, Words* words)
{
    for (const auto& [name, value] : call.body.items())
    {
        if (name.find('=') != name.npos) throw Problem{422, "'" + name + "' is no name.", {{"name", name}}};
        words->push_back(NoOption(name) + "=" + ValueIn(value, name));
    }
}

Reply Done(const Json&) { return {{}, 204}; }
}  // namespace

Reply GetSim(const Call& call)
{
    Json sim = {{"simulated", Sim(call, {"list"})}, {"scenarios", Json::array()}};
    for (Json& one : sim["simulated"])
        if (one["what"] == "value" && !call.Flag("secrets", false))
            if (const auto* object = kobd_describe(one["name"].get<std::string>().c_str()))
                if (object->secret != 0) one["value"] = kMasked;
    for (const Json& scenario : Sim(call, {"run"}))
        sim["scenarios"].push_back({{"name", scenario["name"]}, {"summary", scenario["summary"]}});
    sim["playing"] = call.services.scenario.Playing();
    return {sim};
}

Reply DeleteSim(const Call& call) { return Done(Sim(call, {"clear"})); }

Reply PutSimObjects(const Call& call)
{
    Words words = {"set"};
    if (call.Flag("announce", false)) words.emplace_back("--announce");
    AddPairs(call, &words);
    return Done(Sim(call, words));
}

Reply PostSimFailure(const Call& call)
{
    const std::string operation = TextIn(call, "operation");
    Words words = {"fail"};
    if (operation != "commit") words.push_back(NoOption(TextIn(call, "name")));
    words.push_back(NoOption(operation));
    AddOption(call, "code", &words);
    AddOption(call, "times", &words);
    return Done(Sim(call, words));
}

Reply PostSimDelay(const Call& call)
{
    Words words = {"slow", NoOption(TextIn(call, "name")), NoOption(IntegerIn(call, "milliseconds"))};
    AddOption(call, "times", &words);
    return Done(Sim(call, words));
}

Reply PostSimRow(const Call& call)
{
    Words words = {"row", NoOption(call.names[0]), "add"};
    AddPairs(call, &words);
    return {Sim(call, words), 201};
}

Reply PatchSimRow(const Call& call)
{
    Words words = {"row", NoOption(call.names[0]), "set", NoOption(call.names[1])};
    AddPairs(call, &words);
    return Done(Sim(call, words));
}

Reply DeleteSimRow(const Call& call)
{
    return Done(Sim(call, {"row", NoOption(call.names[0]), "del", NoOption(call.names[1])}));
}

Reply PostSimEvent(const Call& call)
{
    Words words = {"event", NoOption(TextIn(call, "name"))};
    if (call.body.contains("text") && !TextIn(call, "text").empty()) words.push_back(NoOption(TextIn(call, "text")));
    return Done(RunKobctl(call.services.kobctl, words));
}

Reply PostScenario(const Call& call)
{
    const std::string& name = call.names[0];
    Sim(call, {"list"});  // refuses when there is no daemon, or none that simulates
    bool shipped = false;
    for (const Json& scenario : Sim(call, {"run"})) shipped = shipped || scenario["name"] == name;
    if (!shipped) throw Problem{404, "There is no scenario " + name + "."};  // nor is any file of this machine one
    const std::string speed = call.Query("speed", "1");
    NumberIn(speed, "The speed", 1, 1000);
    call.services.scenario.Start(name, speed);
    return {{{"playing", name}}};
}

Reply DeleteScenario(const Call& call)
{
    if (!call.services.scenario.Stop()) throw Problem{409, "No scenario plays."};
    return {{}, 204};
}
}  // namespace kobd::web
