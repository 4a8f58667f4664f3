// Failures and their codes in words.
#include "client/output/failure.h"

#include <cerrno>
#include <cstring>

#include "daemon/base/result.h"

namespace kobd::client
{
std::string CodeText(int code) { return std::string(ResultText(code)) + " (" + std::to_string(code) + ")"; }

Failure FailureWithCode(int code, const std::string& what) { return {code, what + ": " + CodeText(code)}; }

Failure SystemFailure(const std::string& what) { return {kSystemError, what + ": " + strerror(errno)}; }
}  // namespace kobd::client
