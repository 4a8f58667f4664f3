// Objects: read, set, check.
#include <fnmatch.h>
#include <strings.h>
#include <algorithm>
#include <sstream>

#include "web/api/bus.h"
#include "web/api/describe.h"
#include "web/api/object_changes.h"
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

Reply PutObjects(const Call& call) { return Saved({{{"objects", SetObjects(AssignmentsIn(call.body))}}}); }

Reply PutObject(const Call& call)
{
    ObjectCalled(call.names[0]);
    if (call.body.size() != 1 || !call.body.contains("value")) throw Problem{422, "The body is {\"value\": ...}."};
    return Saved({SetObjects({{call.names[0], ValueIn(call.body["value"], call.names[0])}})[0]});
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
