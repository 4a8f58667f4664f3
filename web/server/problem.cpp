#include "web/server/problem.h"

#include "web/server/limits.h"

namespace kobd::web
{
namespace
{
struct Phrase
{
    int status;
    const char* text;
};
constexpr Phrase kPhrases[] = {
    {400, "Bad Request"},
    {401, "Unauthorized"},
    {403, "Forbidden"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {409, "Conflict"},
    {411, "Length Required"},
    {413, "Content Too Large"},
    {414, "URI Too Long"},
    {421, "Misdirected Request"},
    {422, "Unprocessable Content"},
    {431, "Request Header Fields Too Large"},
    {500, "Internal Server Error"},
    {502, "Bad Gateway"},
    {503, "Service Unavailable"},
    {504, "Gateway Timeout"},
};

std::string DetailOfFrame(int status)
{
    switch (status)
    {
        case 411: return "A body needs a Content-Length; a transfer encoding is not taken.";
        case 413: return "A body may have " + std::to_string(kBodyMost) + " bytes.";
        case 431: return "The header of a request may have " + std::to_string(kHeadMost) + " bytes.";
        default: return "The Content-Length is not one number.";
    }
}
}  // namespace

const char* PhraseOf(int status)
{
    for (const Phrase& phrase : kPhrases)
        if (phrase.status == status) return phrase.text;
    return "Error";
}

std::string TextOf(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

std::string Problem::Text() const
{
    Json document = {{"title", PhraseOf(status)}, {"status", status}, {"detail", detail}};
    document.update(more);
    return TextOf(document);
}

std::string RefusalOfFrame(int status)
{
    const std::string body = Problem{status, DetailOfFrame(status)}.Text();
    return "HTTP/1.1 " + std::to_string(status) + " " + PhraseOf(status) + "\r\nContent-Type: " + kProblemType +
           "\r\nContent-Length: " + std::to_string(body.size()) + "\r\nConnection: close\r\n\r\n" + body;
}
}  // namespace kobd::web
