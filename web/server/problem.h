// What is answered to a request that fails: application/problem+json (RFC 9457).
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace kobd::web
{
using Json = nlohmann::ordered_json;

inline constexpr const char* kProblemType = "application/problem+json";

// Thrown by whatever answers a request.
struct Problem
{
    int status = 500;
    std::string detail = {};
    Json more = Json::object();  // members beside those of the standard

    std::string Text() const;
};

const char* PhraseOf(int status);

// JSON as text. A byte that is no UTF-8 becomes the replacement character.
std::string TextOf(const Json& json);

// The whole answer to a request that FrameOf refuses.
std::string RefusalOfFrame(int status);
}  // namespace kobd::web
