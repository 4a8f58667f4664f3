// PIN and PUK forms, PLMN and SIM lock.
#include "validators/sim.h"

#include <cstring>

#include "platform/text.h"
#include "validators/check.h"
#include "validators/parts.h"
#include "validators/regex.h"

using namespace kobd;

namespace
{
constexpr size_t kPinMin = 4;  // digits of a PIN, 3GPP TS 31.101, 9.5.1
constexpr size_t kPinMax = 8;
constexpr int kSimLockMax = 18;  // PLMN codes of a SIM lock
constexpr size_t kPlmnMin = 5;   // digits: mobile country code 3, network code 2 or 3
constexpr size_t kPlmnMax = 6;
constexpr int kPlmnSlot = 8;  // bytes; a code that is too long fills its slot and is recognized by that

// Digits alone, at least `shortest` and at most `longest`.
bool IsCode(const char* text, size_t shortest, size_t longest)
{
    const size_t length = strnlen(text, longest + 1);
    return length >= shortest && length <= longest && string_is_digits(text) != 0;
}
}  // namespace

int validLockPin(const char* value) { return Verdict(RegexMatches(value, "^(0|1),([0-9]{4,8})$")); }

int validEnterPin(const char* value) { return Verdict(IsCode(OrEmpty(value), kPinMin, kPinMax)); }

int ValidVerifyPin(const char* value) { return Verdict(RegexMatches(value, "^([0-9]{4,8}),([0-9]{4,8})$")); }

int validEnterPuk(const char* value) { return Verdict(RegexMatches(value, "^([0-9]{8}),([0-9]{4,8})$")); }

int validLtePlmnlock(const char* value)
{
    if (value != nullptr && *value == 0) return kSuccess;
    return MatchWithLine(value, "^([0-9]{5,6})$");
}

int validLteSimlock(const char* value)
{
    constexpr const char* kFunction = "validLteSimlock";
    if (value == nullptr) return kInvalidArgument;
    const Parts<kSimLockMax, kPlmnSlot> codes(value, ';');
    if (codes.TooMany()) return Refuse(kFunction, "max is 18\n");
    for (int i = 0; i < codes.count; ++i)
    {
        if (!IsCode(codes.part[i], kPlmnMin, kPlmnMax)) return Refuse(kFunction, "PLMN must be 5 or 6 digits\n");
        if (codes.IsRepeated(i)) return Refuse(kFunction, "PLMN duplicate\n");
    }
    return kSuccess;
}
