// Objects: read, set, check.
#include <fnmatch.h>
#include <strings.h>
#include <algorithm>
#include <sstream>

#include "web/api/bus.h"
#include "web/api/describe.h"
#include "web/api/routes.h"

namespace kobd::web
{
namespace
{
using Objects = std::vector<const kobd_description*>;

bool Has(const char* text, const std::string& word)
{
    return text != nullptr && strcasestr(text, word.c_str()) != nullptr;
}

bool HasAllWords(const kobd_description& object, const std::string& search)
{
    std::istringstream words(search);
    for (std::string word; words >> word;)
        if (!Has(object.name, word) && !Has(object.meaning, word)) return false;
    return true;
}

bool IsAskedFor(const Call& call, const kobd_description& object)
{
    const size_t patterns = call.request.get_param_value_count("match");
    bool matches = patterns == 0;
    for (size_t i = 0; i < patterns && !matches; ++i)
        matches = fnmatch(call.request.get_param_value("match", i).c_str(), object.name, FNM_CASEFOLD) == 0;
    return matches && HasAllWords(object, call.Query("search"));
}

Objects ObjectsOf(const Call& call)
{
    Objects objects;
    const kobd_description* object = nullptr;
    for (size_t position = 0; ObjectAt(position, &object); ++position)
        if (object != nullptr && IsAskedFor(call, *object)) objects.push_back(object);
    return objects;
}

// The objects with their values, as the query asks for it.
Json ListOf(const Call& call, const Objects& objects)
{
    const bool describe = call.Flag("describe", true);
    std::vector<std::string> names;
    for (const kobd_description* object : objects)
        if (object->readable != 0) names.emplace_back(object->name);
    const Values values = call.Flag("values", true) ? ReadValues(names) : Values();
    Json list = Json::array();
    for (const kobd_description* object : objects)
    {
        Json one = describe ? DescriptionOf(*object) : Json({{"name", object->name}});
        if (const auto value = values.find(object->name); value != values.end())
            one["value"] = object->secret != 0 && !call.Flag("secrets", false) ? kMasked : value->second;
        list.push_back(std::move(one));
    }
    return list;
}

Assignments AssignmentsIn(const Json& body)
{
    Assignments pairs;
    for (const auto& [name, value] : body.items()) pairs.emplace_back(name, ValueIn(value, name));
    if (pairs.empty()) throw Problem{422, "The body names no object."};
    return pairs;
}

int Set(const Assignments& pairs)
{
    std::vector<const char*> names;
    std::vector<const char*> values;
    for (const auto& [name, value] : pairs)
    {
        names.push_back(name.c_str());
        values.push_back(value.c_str());
    }
    return kobd_set(Bus(), names.data(), values.data(), names.size());
}

// After the router itself has failed half way: sets back what it had changed before, and says of each whether that
// worked.
void TakeBack(const Assignments& pairs, const Values& before, Problem* problem)
{
    std::vector<std::string> names;
    for (const auto& [name, value] : before) names.push_back(name);
    const Values now = ReadValues(names);
    Json restored = Json::array();
    Json left = Json::array();
    for (const auto& [name, value] : pairs)
    {
        const auto old = before.find(name);
        const auto is = now.find(name);
        if (old == before.end() || is == now.end())
            left.push_back(name);
        else if (old->second != is->second)
            (Set({{name, old->second}}) == 0 ? restored : left).push_back(name);
    }
    problem->more["restored"] = restored;
    problem->more["left"] = left;  // changed, or nobody knows: it cannot be read
    problem->detail += left.empty() ? "; all is as before" : "; not all could be set back";
}

Json SetAll(const Assignments& pairs)
{
    std::vector<std::string> readable;
    for (const auto& [name, value] : pairs)
        if (const kobd_description* object = kobd_describe(name.c_str()); object != nullptr && object->readable != 0)
            readable.push_back(name);
    const Values before = ReadValues(readable);
    if (const int code = Set(pairs))
    {
        Problem problem = ProblemOfCall(code);
        if (!IsRefusal(code) && kobd_answered(Bus()) != 0) TakeBack(pairs, before, &problem);
        throw problem;
    }
    Json set = Json::array();
    for (const auto& [name, value] : pairs)
    {
        const kobd_description& object = ObjectCalled(name);
        const auto old = before.find(name);
        set.push_back({{"name", name}, {"value", object.secret != 0 ? kMasked : value}});
        if (old != before.end()) set.back()["old"] = object.secret != 0 ? kMasked : old->second;
    }
    return set;
}
}  // namespace

Reply GetObjects(const Call& call) { return {{{"objects", ListOf(call, ObjectsOf(call))}}}; }

Reply GetObject(const Call& call)
{
    const kobd_description& object = ObjectCalled(call.names[0]);
    Json list = ListOf(call, {&object});
    if (object.readable != 0 && !list[0].contains("value") && call.Flag("values", true))
        throw Problem{502, call.names[0] + " cannot be read now.", {{"name", call.names[0]}}};
    return {std::move(list[0])};
}

Reply PutObjects(const Call& call) { return {{{"objects", SetAll(AssignmentsIn(call.body))}}}; }

Reply PutObject(const Call& call)
{
    ObjectCalled(call.names[0]);
    if (call.body.size() != 1 || !call.body.contains("value")) throw Problem{422, "The body is {\"value\": ...}."};
    return {SetAll({{call.names[0], ValueIn(call.body["value"], call.names[0])}})[0]};
}

Reply PostCheck(const Call& call)
{
    Json results = Json::array();
    for (const auto& [name, value] : AssignmentsIn(call.body))
    {
        const kobd_explanation* why = nullptr;
        const int code = kobd_check(name.c_str(), value.c_str(), &why);
        const kobd_description* object = kobd_describe(name.c_str());
        const bool open = object != nullptr && object->check != nullptr;  // the daemon has a word to say, too
        Json result = {{"name", name}, {"value", value}, {"verdict", code != 0 ? "refused" : open ? "open" : "ok"}};
        if (why != nullptr) result.update(MembersOf(*why));
        if (why != nullptr) result["detail"] = why->text;
        results.push_back(std::move(result));
    }
    return {{{"results", results}}};
}
}  // namespace kobd::web
