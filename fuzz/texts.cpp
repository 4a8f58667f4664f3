// Any text to every check of a text: every descriptor of the dictionary, and the exported
// predicates that no object names.
//   bytes 0 and 1: which check; then texts, each ended by a zero byte: the one that is judged, and
//   values that the same request gives to objects which checks compare with
#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>

#include "dictionary/name_index.h"
#include "dictionary/snapshot.h"
#include "dictionary/value_check.h"
#include "fuzz/recorded.h"
#include "fuzz/target.h"
#include "validators/address.h"
#include "validators/address_arithmetic.h"
#include "validators/band_lock.h"
#include "validators/domain.h"
#include "validators/lan.h"
#include "validators/port.h"
#include "validators/regex.h"
#include "validators/texts.h"

using namespace kobd;

namespace
{
constexpr const char* kCompared[] = {"networkLanSettingIp", "networkLanSettingMask", "networkLanSettingStart",
                                     "networkLanSettingEnd", "upgradeFtpUpgradeFolder"};

struct Predicate
{
    const char* name;
    int (*call)(const char* text, const char* other);
};

int Subnet(const char* text, const char* other)
{
    for (const char* which : {"head", "end", other}) static_cast<void>(getSubnet(text, other, which));
    return 0;
}

int Captures(const char* text, const char*)
{
    static char slots[kCaptureSlots][kCaptureBytes];
    memset(slots, 0, sizeof slots);
    return regexMatchFunction(text, "^(([0-9a-z]+)([0-9]*)([a-z]?)[.:;]?)*$", slots);
}

int Place(const char* text, const char*)
{
    int start = 0;
    int end = 0;
    return checkRegex(text, "[0-9]+", &start, &end);
}

int Trimmed(const char* text, const char*)
{
    const size_t size = strlen(text) + 1;
    const std::unique_ptr<char[]> copy(new char[size]);
    memcpy(copy.get(), text, size);
    Trim(copy.get());
    const std::string_view left = copy.get();
    PROMISE(left.empty() || (strchr(" \t", left.front()) == nullptr && strchr(" \t", left.back()) == nullptr),
            "blanks are left");
    return 0;
}

int Number(const char* text, const char*)
{
    const int64_t number = iptonum(text);
    PROMISE(number >= -2 && number <= int64_t{UINT32_MAX}, "an address of value %lld", static_cast<long long>(number));
    return 0;
}

#define ONE(function)                                                           \
    {                                                                           \
#function, [](const char* text, const char*) { return function(text); } \
    }
#define TWO(function)                                                                        \
    {                                                                                        \
#function, [](const char* text, const char* other) { return function(text, other); } \
    }
const Predicate kPredicates[] = {
    ONE(validIp),
    ONE(validIpInput),
    ONE(validIpRange),
    ONE(validPortRange),
    ONE(validPortFormat),
    ONE(validProtocol),
    ONE(validMask),
    ONE(validMac),
    ONE(validDomain),
    ONE(checkDomain),
    ONE(isBroadcastIP),
    ONE(isLastByteZeroIP),
    TWO(isLanBroadcastIP),
    TWO(isLanSegmentAddress),
    TWO(validBandLock),
    {"inSameSegment", [](const char* text, const char* other) { return inSameSegment(text, other, "255.255.255.0"); }},
    {"getSubnet", Subnet},
    {"regexMatchFunction", Captures},
    {"checkRegex", Place},
    {"Trim", Trimmed},
    {"iptonum", Number},
};

// The next text of the input in a block of exactly its size.
std::unique_ptr<char[]> Take(std::string_view* bytes)
{
    const std::string_view text = bytes->substr(0, bytes->find('\0'));
    bytes->remove_prefix(std::min(bytes->size(), text.size() + 1));
    std::unique_ptr<char[]> copy(new char[text.size() + 1]);
    if (!text.empty()) memcpy(copy.get(), text.data(), text.size());
    copy[text.size()] = 0;
    return copy;
}

void Stage(std::string_view bytes)
{
    for (const char* name : kCompared)
    {
        if (bytes.empty()) return;
        PROMISE(StageValue(*NameLookup(name).object, Take(&bytes).get()) == 0, "no memory for %s", name);
    }
}

std::string Input(size_t check, std::string_view text, std::string_view others = {})
{
    std::string input = {static_cast<char>(check & 255), static_cast<char>(check >> 8)};
    return input.append(text).append(1, '\0').append(others);
}
}  // namespace

void kobd::fuzz::Prepare()
{
    NameIndexBuild();
    ResetRecorded({});
}

std::vector<std::string> kobd::fuzz::Seeds()
{
    using namespace std::string_literals;
    static const std::string kLan = "192.168.0.1\0"s + "255.255.255.0\0"s + "192.168.0.10\0"s + "192.168.0.99\0"s;
    std::vector<std::string> seeds;
    for (size_t check = 0; check < kObjects.size(); ++check)
    {
        const CheckDescriptor& descriptor = kObjects[check].check;
        if (descriptor.validator == nullptr) continue;
        for (const char* text : {"192.168.0.20", "1;3;7;", "a-b.example.com", "1234", "http://a.example:80/x?y=1"})
            seeds.push_back(Input(check, text, kLan));
    }
    for (size_t check = 0; check < std::size(kPredicates); ++check)
        for (const char* text : {"10.1.2.3/24", "80-443", "00:1a:2B:3c:4d:5e"})
            seeds.push_back(Input(kObjects.size() + check, text, "255.255.255.0"));
    seeds.push_back(Input(0, "12:34", kLan));
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 2) return -1;
    const size_t check = (data[0] | size_t{data[1]} << 8) % (kObjects.size() + std::size(kPredicates));
    std::string_view bytes(reinterpret_cast<const char*>(data + 2), size - 2);
    const std::unique_ptr<char[]> text = Take(&bytes);
    const std::string before = text.get();
    if (check >= kObjects.size())
    {
        kPredicates[check - kObjects.size()].call(text.get(), Take(&bytes).get());
    }
    else
    {
        Stage(bytes);
        const int code = ParameterCheck(text.get(), &kObjects[check].check);
        PROMISE(code == 0 || code == 2, "%s: code %d", kObjects[check].name, code);
        PROMISE(ParameterCheck(text.get(), &kObjects[check].check) == code, "%s: two verdicts", kObjects[check].name);
        StagedValuesFree();
    }
    PROMISE(before == text.get(), "a check changed the text it judged");
    fuzz::ResetRecorded({});
    return 0;
}
