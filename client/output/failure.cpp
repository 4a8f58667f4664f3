// Failures and their codes in words.
#include "client/output/failure.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>

#include "client/dictionary/dictionary.h"
#include "daemon/base/result.h"

namespace kobd::client
{
Failure FailureWithCode(int code, const std::string& what) { return {code, what + ": " + CodeText(code)}; }

Failure NoSuchNameFailure(const std::string& kind, const std::string& name)
{
    const bool is_word =
        !name.empty() && std::ranges::all_of(name, [](char c) { return isalnum(static_cast<unsigned char>(c)) != 0; });
    std::string what = NoSuchName(kind, name);
    if (is_word && what.ends_with(" " + name)) what += "; try kobctl search " + name;
    return FailureWithCode(kNotFound, what);
}

Failure SystemFailure(const std::string& what) { return {kSystemError, what + ": " + strerror(errno)}; }
}  // namespace kobd::client
