#include "web/api/bus.h"

#include <strings.h>
#include <charconv>
#include <cstdlib>
#include <memory>

namespace kobd::web
{
namespace
{
struct Close
{
    void operator()(kobd_client* client) const { kobd_client_close(client); }
};
thread_local std::unique_ptr<kobd_client, Close> bus;

int StatusOf(int code, bool answered)
{
    switch (code)
    {
        case KOBD_NOT_FOUND:
        case KOBD_INVALID:
        case kReadOnly:
        case kNoSuchColumn: return 422;
        case kNoSuchRow: return 404;
        case kTableFull:
        case kNoSuchOperation: return 409;
        case KOBD_TIMEOUT: return 504;
        case KOBD_BUFFER_LIMIT: return 413;
        default: return answered ? 502 : 503;
    }
}

Problem NoSuch(const std::string& what, const std::string& name)
{
    if (kobd_describe(name.c_str()) != nullptr)
        return {404, name + " is an object, not a " + what + ".", {{"name", name}}};
    if (kobd_describe_table(name.c_str()) != nullptr)
        return {404, name + " is a table, not an " + what + ".", {{"name", name}}};
    Problem problem = {404, "There is no " + what + " " + name + "."};
    if (const char* near = kobd_did_you_mean(name.c_str()))
    {
        problem.detail += " Did you mean " + std::string(near) + "?";
        problem.more["right"] = near;
    }
    problem.more["name"] = name;
    return problem;
}
}  // namespace

kobd_client* Bus()
{
    kobd_client* client = bus.get();
    if (client != nullptr) return client;
    if (const int code = kobd_client_open(&client))
        throw Problem{503, "The message bus cannot be used: " + std::string(kobd_result_text(code)) + "."};
    bus.reset(client);
    return client;
}

Reply Saved(Reply reply)
{
    const char* why = kobd_not_saved(Bus());
    if (why == nullptr || *why == 0) return reply;
    reply.body["saved"] = false;
    reply.body["not_saved"] = why;
    if (reply.status == 204) reply.status = 200;  // it has a body now
    return reply;
}

bool IsRefusal(int code)
{
    return code == KOBD_INVALID || code == KOBD_NOT_FOUND || code == kReadOnly || code == kNoSuchColumn;
}

bool ReadsAs(const kobd_description* description, const std::string& set, const std::string& now)
{
    if (strcasecmp(set.c_str(), now.c_str()) == 0) return true;
    return description != nullptr && description->is_number != 0 &&
           strtoll(set.c_str(), nullptr, 10) == strtoll(now.c_str(), nullptr, 10);
}

void AddTakenBack(const Json& restored, const Json& left, Problem* problem)
{
    problem->more["restored"] = restored;
    problem->more["left"] = left;
    problem->detail += left.empty() ? "; all is as before" : "; these could not be set back:";
    for (const Json& name : left) problem->detail += (name == left[0] ? " " : ", ") + name.get<std::string>();
}

Json MembersOf(const kobd_explanation& why)
{
    Json members;
    const auto add = [&](const char* key, const char* text)
    {
        if (text != nullptr) members[key] = text;
    };
    add("object", why.object);
    add("table", why.table);
    if (why.index >= 0) members["index"] = why.index;
    add("column", why.column);
    add("value", why.value);
    add("reason", why.reason);
    add("right", why.right);
    return members;
}

Problem ProblemOfCall(int code)
{
    Problem problem = {StatusOf(code, kobd_answered(Bus()) != 0), kobd_result_text(code)};
    if (const kobd_explanation* why = kobd_explain(Bus()))
    {
        problem.more = MembersOf(*why);
        problem.detail = why->text;
    }
    problem.more["code"] = code;
    if (code == KOBD_TIMEOUT) problem.detail += "; it may still be served";
    if (code == KOBD_INITIALIZE_FAILED) bus.reset();  // the next call opens a new one
    return problem;
}

void Demand(int code)
{
    if (code != 0) throw ProblemOfCall(code);
}

Values ReadValues(const std::vector<std::string>& names)
{
    std::vector<const char*> pointers;
    for (const std::string& name : names) pointers.push_back(name.c_str());
    Values values;
    const auto take = [](void* context, const char* name, const char* value)
    {
        if (value != nullptr) static_cast<Values*>(context)->emplace(name, value);
    };
    if (!names.empty()) Demand(kobd_get_many(Bus(), pointers.data(), pointers.size(), take, &values));
    return values;
}

std::string ValueIn(const Json& value, const std::string& name)
{
    if (value.is_string())
    {
        std::string text = value.get<std::string>();
        if (text.find('\0') == text.npos) return text;
        throw Problem{422, name + ": a value has no zero byte.", {{"name", name}}};
    }
    if (value.is_number_integer()) return value.dump();
    if (value.is_boolean()) return value.get<bool>() ? "1" : "0";
    throw Problem{422, name + ": a value is a text, an integer, true or false.", {{"name", name}}};
}

int32_t NumberIn(const std::string& text, const std::string& what, int32_t least, int32_t most)
{
    int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc() && end == text.data() + text.size() && number >= least && number <= most) return number;
    throw Problem{400, what + " is a number from " + std::to_string(least) + " to " + std::to_string(most) + ", not '" +
                           text + "'."};
}

const kobd_description& ObjectCalled(const std::string& name)
{
    const kobd_description* object = kobd_describe(name.c_str());
    if (object == nullptr) throw NoSuch("object", name);
    return *object;
}

const kobd_table_description& TableCalled(const std::string& name)
{
    const kobd_table_description* table = kobd_describe_table(name.c_str());
    if (table == nullptr) throw NoSuch("table", name);
    return *table;
}
}  // namespace kobd::web
