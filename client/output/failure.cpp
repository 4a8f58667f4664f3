// Failures and their codes in words.
#include "client/output/failure.h"

#include <cerrno>
#include <cstring>

#include "daemon/base/result.h"

namespace kobd::client
{
Failure FailureWithCode(int code, const std::string& what) { return {code, what + ": " + CodeText(code)}; }

Failure SystemFailure(const std::string& what) { return {kSystemError, what + ": " + strerror(errno)}; }
}  // namespace kobd::client
