// The values of a router that has just started: an object takes back what it shows.
#include <gtest/gtest.h>

#include <cstring>

#include "dictionary/name_index.h"
#include "dictionary/value_check.h"
#include "host/objects/sources.h"
#include "tests/host/host_state.h"
#include "tests/process_setup.h"

namespace kobd::test
{
namespace
{
using FactoryValues = HostState;

TEST_F(FactoryValues, ThatTellOfATableNameOneThatThePlatformKeeps)
{
    for (const host::Source& source : host::Sources())
        if (source.kind == host::SourceKind::RowCount || source.kind == host::SourceKind::RowIndexes)
        {
            EXPECT_NE(host::FindList(source.text), nullptr) << source.object << ": " << source.text;
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
