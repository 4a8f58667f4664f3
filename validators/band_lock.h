// The band locks. Conventions in validators/check.h.
#pragma once

namespace kobd
{
// The check that both band locks share: the empty text, or up to 16 bands of `supported`, each followed
// by ";" and named once ("3;7;20;").
//   supported: band numbers with blanks between them, at most 255 characters; the first 64 are looked at
// Writes "invalid\n" as validBandLock when the last character is not ";", or is the only one.
int validBandLock(const char* value, const char* supported);
}  // namespace kobd

extern "C"
{
    // The same with the LTE or NR bands that the module supports. The empty text is no lock.
    int validlteBandLock(const char* value);
    int valid5gBandLock(const char* value);
}
