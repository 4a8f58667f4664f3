// kobctl get NAME...
#include <algorithm>
#include <cstdio>
#include <map>

#include "client/commands.h"
#include "client/dictionary.h"
#include "client/request.h"
#include "daemon/result.h"
#include "daemon/tlv.h"

namespace kobd::client
{
namespace
{
constexpr size_t kBatchNames = 100;  // well below what a request holds

// Reads names[first, last) into `values`; halves the batch when the reply would not fit.
Response Fetch(const Options& options, const Words& names, size_t first, size_t last,
               std::map<std::string, std::string>* values)
{
    Items items;
    for (size_t i = first; i < last; ++i) items.emplace_back(kTagObjectName, names[i]);
    Response response = Call(kRequestGet, items, options.timeout_ms);
    if (response.code == kBufferLimit && last - first > 1)
    {
        const size_t middle = first + (last - first) / 2;
        response = Fetch(options, names, first, middle, values);
        return response.code != 0 ? response : Fetch(options, names, middle, last, values);
    }
    for (size_t i = 0; i + 1 < response.items.size(); i += 2)
        (*values)[response.items[i].second] = response.items[i + 1].second;
    return response;
}

std::string WhyMissing(const std::string& name)
{
    const ObjectEntry* object = FindObject(name);
    if (object != nullptr && object->access == Access::kWriteOnly)
        return name + " cannot be read: " + ResultText(kMethodUnavailable) + " (16), it is write-only";
    if (object != nullptr) return name + " could not be read by the router, see the log";
    if (FindTable(name) != nullptr) return name + " is a table, not an object";
    const std::string near = Nearest(name);
    return name + ": " + ResultText(kNotFound) + " (1)" + (near.empty() ? "" : ", did you mean " + near + "?");
}

void Print(const Options& options, const Words& names, const std::map<std::string, std::string>& values)
{
    const char* separator = "";
    if (options.json) printf("{");
    for (const std::string& name : names)
    {
        const auto found = values.find(name);
        if (found == values.end()) continue;
        if (options.json)
            printf("%s%s:%s", separator, JsonString(name).c_str(), JsonString(found->second).c_str());
        else if (names.size() == 1)
            printf("%s\n", found->second.c_str());
        else
            printf("%s=%s\n", name.c_str(), found->second.c_str());
        separator = ",";
    }
    if (options.json) printf("}\n");
}
}  // namespace

int CommandGet(const Options& options, const Words& names)
{
    std::map<std::string, std::string> values;
    for (size_t first = 0; first < names.size(); first += kBatchNames)
    {
        const size_t last = std::min(first + kBatchNames, names.size());
        const Response response = Fetch(options, names, first, last, &values);
        if (response.code != 0) return FailRequest(options, response.code, response.from_bus, "get");
    }
    Print(options, names, values);
    int status = 0;
    for (const std::string& name : names)
    {
        if (values.contains(name)) continue;
        fprintf(stderr, "kobctl: %s\n", WhyMissing(name).c_str());
        status = 1;
    }
    return status;
}
}  // namespace kobd::client
