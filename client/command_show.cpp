// kobctl show: every name, as the running daemon lists them. Removes the file it asked for.
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "client/commands.h"
#include "client/request.h"
#include "daemon/result.h"

namespace kobd::client
{
int CommandShow(const Options& options, const Words&)
{
    const Response response = Call(kRequestShow, {}, options.timeout_ms);
    if (response.code != 0) return FailRequest(options, response.code, response.from_bus, "show");
    if (response.items.empty()) return Fail(options, kSystemError, "show: the reply names no file");
    const std::string path = response.items[0].second;
    std::ifstream file(path);
    if (!file) return Fail(options, kSystemError, "show: cannot read " + path);
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
    if (unlink(path.c_str()) != 0) return Fail(options, kSystemError, "show: cannot remove " + path);
    return 0;
}
}  // namespace kobd::client
