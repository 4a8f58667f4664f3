// PIN and PUK forms, PLMN and SIM lock.
#include "validators/sim.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/validators/judge.h"

namespace kobd::test
{
namespace
{
const std::string kNoMatch = "2|regexMatchFunction: REGEX_ERROR: regex no match\n";
const std::string kPlmn = "2|PLMN must be 5 or 6 digits\n";
const std::string kDuplicate = "2|PLMN duplicate\n";
const std::string kTooMany = "2|max is 18\n";

std::string Codes(int count)
{
    std::string list;
    for (int i = 0; i < count; ++i) list += (i != 0 ? ";" : "") + std::to_string(46000 + i);
    return list;
}

const std::vector<TextsByVerdict> kEnterPin = {
    {"0", "four to eight digits", {"1234", "12345678", "0000"}},
    {"2", "another length", {"123", "123456789", "", std::string(8000, '1')}},
    {"2", "more than digits", {"12a4", "-123", " 1234", "1234\n", "12.4"}},
};

const std::vector<TextsByVerdict> kLockPin = {
    {"0", "a flag and a PIN", {"0,1234", "1,12345678"}},
    {"2", "no such flag", {"2,1234", "01,1234", "1234", ",1234", ""}},
    {"2", "no such PIN", {"1,123", "1,123456789", "1,", "1,12 34", "1," + std::string(8000, '1')}},
    {"2", "another separator, or one more", {"1;1234", "1,1234,"}},
    {"2", "more around", {" 1,1234", "1,1234\n", "x\n1,1234"}},
};

const std::vector<TextsByVerdict> kVerifyPin = {
    {"0", "two PINs, the same or of other lengths", {"1234,5678", "12345678,87654321", "1234,1234", "1234,12345678"}},
    {"2", "the old one", {"123,5678", "123456789,5678", ",1234", "12a4,5678"}},
    {"2", "the new one", {"1234,567", "1234,123456789", "1234", "1234,", "1234, 5678"}},
    {"2", "three, none", {"1234,5678,9012", ""}},
};

const std::vector<TextsByVerdict> kEnterPuk = {
    {"0", "eight digits and a PIN", {"12345678,1234", "12345678,12345678"}},
    {"2", "no PUK", {"1234567,1234", "123456789,1234", "1234,12345678", "1234567a,1234", ""}},
    {"2", "no PIN", {"12345678,123", "12345678,123456789", "12345678"}},
};

const std::vector<TextsByVerdict> kPlmnLock = {
    {"0", "no lock, five or six digits", {"", "46000", "310260", "00000"}},
    {kNoMatch, "another length", {"4600", "4600000", std::string(8000, '4')}},
    {kNoMatch, "more than digits", {"46000;", "4600a", " 46000", "46000\n"}},
};

const std::vector<TextsByVerdict> kSimLock = {
    {"0", "no lock", {""}},
    {"0", "codes; one empty part at the end is none", {"46000", "46000;", "46000;46001", "46000;460001;"}},
    {"0", "a beginning is another code", {"46000;460000"}},
    {"0", "eighteen", {Codes(18), Codes(18) + ";"}},
    {kTooMany, "nineteen, counted before they are looked at", {Codes(19), Codes(18) + ";;", std::string(8000, ';')}},
    {kPlmn, "four digits, seven and more", {"4600;", "4600000", "46000000", std::string(8000, '4')}},
    {kPlmn, "an empty one", {";", ";46000", "46000;;46001", "46000;;"}},
    {kPlmn, "more than digits", {"46000,46001", "46000; 46001", "4600a", "-46000"}},
    {kDuplicate, "twice", {"46000;46001;46000", Codes(17) + ";46000"}},
    {kDuplicate, "ends at the first that is wrong", {"46000;46000;x"}},
    {kPlmn, "ends at the first that is wrong", {"x;46000;46000"}},
};
}  // namespace

TEST(Sim, PinsAndLocks)
{
    ExpectVerdicts(CHECK(validEnterPin), kEnterPin);
    ExpectVerdicts(CHECK(validLockPin), kLockPin);
    ExpectVerdicts(CHECK(ValidVerifyPin), kVerifyPin);
    ExpectVerdicts(CHECK(validEnterPuk), kEnterPuk);
    ExpectVerdicts(CHECK(validLtePlmnlock), kPlmnLock);
    ExpectVerdicts(CHECK(validLteSimlock), kSimLock);
}
}  // namespace kobd::test
