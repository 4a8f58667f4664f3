// A value that each object takes and one that it refuses.
#pragma once

#include <string>

#include "client/dictionary/dictionary.h"

namespace kobd::test
{
struct SampleValues
{
    std::string good;
    std::string bad;        // empty: the type refuses nothing that fits a message
    bool of_check = false;  // chosen for the object's own check
};

// On a router with factory settings whose objects before it in the catalogue have their good values
// already.
SampleValues SamplesFor(const client::ObjectEntry& object);
}  // namespace kobd::test
