// Bytes that are nearly right.
#pragma once

#include <random>
#include <string>

namespace kobd::fuzz
{
// The payload with one to four random changes: bytes, bits, insertions, cuts. Not for an empty one.
std::string Mutated(std::string payload, std::mt19937& random);
}  // namespace kobd::fuzz
