// PIN and PUK forms, PLMN and SIM lock.
#include "validators/sim.h"

#include <cstring>

#include "daemon/base/log.h"
#include "daemon/base/result.h"
#include "platform/text.h"
#include "validators/parts.h"
#include "validators/regex.h"

namespace kobd
{
namespace
{
constexpr size_t kPinMin = 4;  // digits of a PIN, 3GPP TS 31.101, 9.5.1
constexpr size_t kPinMax = 8;
constexpr int kSimLockMax = 18;  // PLMN codes of a SIM lock
constexpr size_t kPlmnMin = 5;   // digits: mobile country code 3, network code 2 or 3
constexpr size_t kPlmnMax = 6;
constexpr int kPlmnSlot = 8;  // bytes; a code too long fills its slot and is known by that

int RefuseSimLock(const char* line)
{
    LOG_ALWAYS("validLteSimlock", "%s", line);
    return kInvalidArgument;
}

bool IsPlmn(const char* code)
{
    const size_t length = strlen(code);
    return string_is_digits(code) && length >= kPlmnMin && length <= kPlmnMax;
}
}  // namespace
}  // namespace kobd

using namespace kobd;

int validLockPin(const char* value)
{
    return value != nullptr && RegexMatches(value, "^(0|1),([0-9]{4,8})$") ? kSuccess : kInvalidArgument;
}

int validEnterPin(const char* value)
{
    if (value == nullptr) return kInvalidArgument;
    const size_t length = strnlen(value, kPinMax + 1);
    return length >= kPinMin && length <= kPinMax && string_is_digits(value) ? kSuccess : kInvalidArgument;
}

int ValidVerifyPin(const char* value)
{
    return value != nullptr && RegexMatches(value, "^([0-9]{4,8}),([0-9]{4,8})$") ? kSuccess : kInvalidArgument;
}

int validEnterPuk(const char* value)
{
    return value != nullptr && RegexMatches(value, "^([0-9]{8}),([0-9]{4,8})$") ? kSuccess : kInvalidArgument;
}

int validLtePlmnlock(const char* value)
{
    if (value != nullptr && *value == 0) return kSuccess;
    char captures[2][kCaptureBytes] = {};
    return regexMatchFunction(value, "^([0-9]{5,6})$", captures);
}

int validLteSimlock(const char* value)
{
    if (value == nullptr) return kInvalidArgument;
    const Parts<kSimLockMax, kPlmnSlot> codes(value, ';');
    if (codes.TooMany()) return RefuseSimLock("max is 18\n");
    for (int i = 0; i < codes.count; ++i)
    {
        if (!IsPlmn(codes.part[i])) return RefuseSimLock("PLMN must be 5 or 6 digits\n");
        for (int earlier = 0; earlier < i; ++earlier)
            if (strcmp(codes.part[earlier], codes.part[i]) == 0) return RefuseSimLock("PLMN duplicate\n");
    }
    return kSuccess;
}
