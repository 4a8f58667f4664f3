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
}  // namespace

TEST(Pin, Forms)
{
    ExpectVerdicts(CHECK(validEnterPin), {
                                             {"1234", "0", "shortest"},
                                             {"12345678", "0", "longest"},
                                             {"0000", "0", "zeros"},
                                             {"123", "2", "too short"},
                                             {"123456789", "2", "too long"},
                                             {"", "2", "empty"},
                                             {"12a4", "2", "a letter"},
                                             {"-123", "2", "a sign"},
                                             {" 1234", "2", "a blank"},
                                             {"1234\n", "2", "a newline"},
                                             {"12.4", "2", "a point"},
                                             {std::string(8000, '1'), "2", "long"},
                                         });
    ExpectVerdicts(CHECK(validLockPin), {
                                            {"0,1234", "0", "off"},
                                            {"1,12345678", "0", "on, longest"},
                                            {"2,1234", "2", "no such flag"},
                                            {"01,1234", "2", "a flag of two digits"},
                                            {"1,123", "2", "too short"},
                                            {"1,123456789", "2", "too long"},
                                            {"1,", "2", "no PIN"},
                                            {"1234", "2", "no flag"},
                                            {",1234", "2", "an empty flag"},
                                            {"1;1234", "2", "a semicolon"},
                                            {"1,12 34", "2", "a blank"},
                                            {"1,1234,", "2", "a second comma"},
                                            {" 1,1234", "2", "a blank before"},
                                            {"1,1234\n", "2", "a newline behind"},
                                            {"x\n1,1234", "2", "a line before"},
                                            {"", "2", "empty"},
                                            {"1," + std::string(8000, '1'), "2", "long"},
                                        });
    ExpectVerdicts(CHECK(ValidVerifyPin), {
                                              {"1234,5678", "0", "shortest"},
                                              {"12345678,87654321", "0", "longest"},
                                              {"1234,1234", "0", "the same again"},
                                              {"1234,12345678", "0", "lengths may differ"},
                                              {"123,5678", "2", "old too short"},
                                              {"1234,567", "2", "new too short"},
                                              {"123456789,5678", "2", "old too long"},
                                              {"1234,123456789", "2", "new too long"},
                                              {"1234", "2", "no new one"},
                                              {"1234,", "2", "an empty new one"},
                                              {",1234", "2", "an empty old one"},
                                              {"1234,5678,9012", "2", "three"},
                                              {"1234, 5678", "2", "a blank"},
                                              {"12a4,5678", "2", "a letter"},
                                              {"", "2", "empty"},
                                          });
    ExpectVerdicts(CHECK(validEnterPuk), {
                                             {"12345678,1234", "0", "shortest PIN"},
                                             {"12345678,12345678", "0", "longest PIN"},
                                             {"1234567,1234", "2", "PUK too short"},
                                             {"123456789,1234", "2", "PUK too long"},
                                             {"12345678,123", "2", "PIN too short"},
                                             {"12345678,123456789", "2", "PIN too long"},
                                             {"12345678", "2", "no PIN"},
                                             {"1234,12345678", "2", "turned round"},
                                             {"1234567a,1234", "2", "a letter"},
                                             {"", "2", "empty"},
                                         });
}

TEST(PlmnLock, OneCode)
{
    ExpectVerdicts(CHECK(validLtePlmnlock), {
                                                {"", "0", "no lock"},
                                                {"46000", "0", "five digits"},
                                                {"310260", "0", "six digits"},
                                                {"00000", "0", "zeros"},
                                                {"4600", kNoMatch, "four"},
                                                {"4600000", kNoMatch, "seven"},
                                                {"46000;", kNoMatch, "a list"},
                                                {"4600a", kNoMatch, "a letter"},
                                                {" 46000", kNoMatch, "a blank"},
                                                {"46000\n", kNoMatch, "a newline"},
                                                {std::string(8000, '4'), kNoMatch, "long"},
                                            });
}

TEST(SimLock, ListsOfCodes)
{
    ExpectVerdicts(CHECK(validLteSimlock), {
                                               {"", "0", "no lock"},
                                               {"46000", "0", "one"},
                                               {"46000;", "0", "one empty part at the end is none"},
                                               {"46000;46001", "0", "two"},
                                               {"46000;460001;", "0", "five and six digits"},
                                               {Codes(18), "0", "eighteen"},
                                               {Codes(18) + ";", "0", "eighteen and the end"},
                                               {Codes(19), kTooMany, "nineteen"},
                                               {Codes(18) + ";;", kTooMany, "an empty one is the nineteenth"},
                                               {std::string(8000, ';'), kTooMany, "counted before they are looked at"},
                                               {"4600;", kPlmn, "four digits"},
                                               {"4600000", kPlmn, "seven"},
                                               {"46000000", kPlmn, "eight"},
                                               {std::string(8000, '4'), kPlmn, "long"},
                                               {";", kPlmn, "an empty one"},
                                               {";46000", kPlmn, "an empty one in front"},
                                               {"46000;;46001", kPlmn, "an empty one between"},
                                               {"46000;;", kPlmn, "an empty one before the end"},
                                               {"46000,46001", kPlmn, "a comma"},
                                               {"46000; 46001", kPlmn, "a blank"},
                                               {"4600a", kPlmn, "a letter"},
                                               {"-46000", kPlmn, "a sign"},
                                               {"46000;46001;46000", kDuplicate, "twice"},
                                               {"46000;46000;x", kDuplicate, "ends at the first that is wrong"},
                                               {"x;46000;46000", kPlmn, "ends at the first that is wrong"},
                                               {"46000;460000", "0", "a beginning is another code"},
                                               {Codes(17) + ";46000", kDuplicate, "the last repeats the first"},
                                           });
}
}  // namespace kobd::test
