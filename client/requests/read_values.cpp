// Reading many objects.
#include "client/requests/read_values.h"

#include "daemon/base/tlv.h"

namespace kobd::client
{
Response ReadValues(const Options& options, const Words& names, Values* values)
{
    std::vector<Items> parts;
    for (const std::string& name : names) parts.push_back({Item(kTagObjectName, name)});
    Response response = CallInParts(options, KOBD_GET, parts);
    const Items& answers = response.items;
    for (size_t i = 0; i + 1 < answers.size(); i += 2) (*values)[answers[i].text] = answers[i + 1].text;
    return response;
}
}  // namespace kobd::client
