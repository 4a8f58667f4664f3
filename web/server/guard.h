// Who may ask: requests that name this machine, come from our own page or from no page, and know the token.
#pragma once

#include <httplib.h>

#include <string>

namespace kobd::web
{
class Guard
{
public:
    Guard(int port, std::string token) : port_(std::to_string(port)), token_(std::move(token)) {}

    // Throws a Problem for a request that another page may have made: a name in the Host field that is not this
    // machine's may be anybody's, and so may an Origin.
    void CheckSender(const httplib::Request& request) const;

    // Throws a Problem for a request without the token. A browser's EventSource sends no header fields of ours, so that
    // the address of events may have the token in its query.
    void CheckToken(const httplib::Request& request, bool in_query) const;

private:
    bool IsOurs(const std::string& host) const;

    std::string port_;
    std::string token_;
};

// 128 random bits in hexadecimal digits. Empty when the system has none to give.
std::string NewToken();
}  // namespace kobd::web
