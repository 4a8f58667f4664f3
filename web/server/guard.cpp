#include "web/server/guard.h"

#include <sys/random.h>

#include "web/server/problem.h"

namespace kobd::web
{
namespace
{
// Takes the same time wherever the texts differ.
bool SameSecret(const std::string& given, const std::string& right)
{
    unsigned differences = given.size() != right.size();
    for (size_t i = 0; i < right.size(); ++i)
        differences |=
            static_cast<unsigned char>(right[i]) ^ static_cast<unsigned char>(i < given.size() ? given[i] : 0);
    return differences == 0;
}
}  // namespace

bool Guard::IsOurs(const std::string& host) const
{
    // A client leaves out the port that http has by itself.
    if (port_ == "80" && (host == "127.0.0.1" || host == "localhost")) return true;
    return host == "127.0.0.1:" + port_ || host == "localhost:" + port_;
}

void Guard::CheckSender(const httplib::Request& request) const
{
    if (request.get_header_value_count("Host") != 1 || !IsOurs(request.get_header_value("Host")))
        throw Problem{421, "The Host of a request is 127.0.0.1:" + port_ + " or localhost:" + port_ + "."};
    if (!request.has_header("Origin")) return;
    const std::string origin = request.get_header_value("Origin");
    if (!origin.starts_with("http://") || !IsOurs(origin.substr(7)))
        throw Problem{403, "A page of another origin may not ask."};
}

void Guard::CheckToken(const httplib::Request& request, bool in_query) const
{
    const std::string scheme = "Bearer ";
    const std::string field = request.get_header_value("Authorization");
    std::string given = field.starts_with(scheme) ? field.substr(scheme.size()) : "";
    if (in_query && field.empty()) given = request.get_param_value("token");
    if (!SameSecret(given, token_))
        throw Problem{401,
                      "The request needs the header field 'Authorization: Bearer TOKEN' with the token of the "
                      "address that kobd-web has printed."};
}

std::string NewToken()
{
    unsigned char bytes[16];
    if (getrandom(bytes, sizeof bytes, 0) != static_cast<ssize_t>(sizeof bytes)) return "";
    std::string token;
    for (const unsigned char byte : bytes)
    {
        token += "0123456789abcdef"[byte >> 4];
        token += "0123456789abcdef"[byte & 15];
    }
    return token;
}
}  // namespace kobd::web
