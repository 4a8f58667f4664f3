// Makes the answer to one whole request: reads it, checks who asks, finds the route and writes what it returns.
#pragma once

#include <string>

#include "web/server/connections.h"
#include "web/server/guard.h"
#include "web/server/route.h"

namespace kobd::web
{
class Http : private httplib::Server
{
public:
    Http(const Guard& guard, Services* services);

    After Answer(const std::string& request, std::string* answer);

private:
    void Handle(const httplib::Request& request, httplib::Response* response);
    Reply ReplyTo(const httplib::Request& request);

    const Guard& guard_;
    Services& services_;
};
}  // namespace kobd::web
