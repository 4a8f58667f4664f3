// kobctl show: every name, as the running daemon lists them. Removes the file it asked for.
#include <cstdio>
#include <sstream>
#include <string>

#include "client/commands/commands.h"
#include "client/requests/dump_file.h"
#include "client/requests/request.h"
#include "daemon/base/result.h"

namespace kobd::client
{
int CommandShow(const Options& options, const Words&)
{
    const Response response = Call(kRequestShow, {}, options.timeout_ms);
    if (response.code != 0) return FailRequest(options, response.code, response.from_bus, "show");
    if (response.items.empty()) return Fail(options, kSystemError, "show: the reply names no file");
    std::string listing;
    const std::string error = TakeDumpFile(response.items[0].text, &listing);
    if (!error.empty()) return Fail(options, kSystemError, "show: " + error);
    std::istringstream file(listing);
    const char* separator = "";
    if (options.json) printf("[");
    for (std::string name; std::getline(file, name); separator = ",")
    {
        if (options.json)
            printf("%s%s", separator, JsonString(name).c_str());
        else
            printf("%s\n", name.c_str());
    }
    if (options.json) printf("]\n");
    return 0;
}
}  // namespace kobd::client
