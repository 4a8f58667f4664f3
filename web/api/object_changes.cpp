#include "web/api/object_changes.h"

#include "web/api/describe.h"

namespace kobd::web
{
namespace
{
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
            left.push_back(name);  // it cannot be compared
        else if (old->second != is->second)
        {
            const bool ours = ReadsAs(kobd_describe(name.c_str()), value, is->second);  // nobody has changed it since
            (ours && Set({{name, old->second}}) == 0 ? restored : left).push_back(name);
        }
    }
    AddTakenBack(restored, left, problem);
}

}  // namespace

Json SetObjects(const Assignments& pairs)
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
}  // namespace kobd::web
