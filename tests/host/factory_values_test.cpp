// The values of a router that has just started: each belongs to an object, and an object takes
// back what it shows.
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>

#include "dictionary/name_index.h"
#include "dictionary/value_check.h"
#include "tests/host/host_state.h"
#include "tests/process_setup.h"

namespace kobd::test
{
namespace
{
using FactoryValues = HostState;

constexpr const char* kNames[] = {
#define VALUE(name, value) name,
#include "host/factory/factory_values.def"
#undef VALUE
};

TEST(FactoryValueRows, NameAnObjectOnceEach)
{
    NameIndexBuild();
    std::set<std::string> seen;
    for (const std::string name : kNames)
    {
        EXPECT_TRUE(seen.insert(name).second) << name << " stands twice";
        // "#2" marks the second object of a name.
        EXPECT_NE(NameLookup(name.substr(0, name.find('#'))).object, nullptr) << name;
    }
}

TEST_F(FactoryValues, PassTheCheckOfTheirOwnObject)
{
    NameIndexBuild();
    const OutputCapture log;  // what the checks say
    for (const ObjDef& object : kObjects)
    {
        char value[kValueBuffer] = "";
        if (object.get == nullptr || object.set == nullptr) continue;
        ASSERT_EQ(object.get(value), 0) << object.name;
        // An empty text is a setting that nobody has made yet; an action shows 0.
        if (*value == 0 || object.get == NameLookup("systemReboot").object->get) continue;
        EXPECT_EQ(ParameterCheck(value, &object.check), 0) << object.name << "=" << value;
    }
}
}  // namespace
}  // namespace kobd::test
