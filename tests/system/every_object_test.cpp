// Every object of the dictionary through the real daemon: read, and where it can be written, given
// a value it takes and one it refuses.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "client/dictionary/dictionary.h"
#include "daemon/base/tlv.h"
#include "tests/namespaces.h"
#include "tests/system/daemon_process.h"
#include "tests/system/object_samples.h"

namespace kobd::test
{
namespace
{
using client::ObjectEntry;

std::string Read(const char* name)
{
    const Answer answer = Request(kGet, {{kTagObjectName, name}});
    return answer.result == 0 && answer.texts.size() == 2 && answer.texts[0] == name ? answer.texts[1] : "(nothing)";
}

int Write(const char* name, const std::string& value)
{
    return Request(kSetSilent, {{kTagObjectName, name}, {kTagValue, value}}).result;
}

void CheckWritable(const ObjectEntry& object)
{
    const bool readable = object.access == Access::kReadWrite;
    const SampleValues values = SamplesFor(object);
    const std::string before = readable ? Read(object.name) : "";
    if (!values.bad.empty() || values.of_check)
    {
        EXPECT_EQ(Write(object.name, values.bad), 2) << object.name;
    }
    if (readable)
    {
        EXPECT_EQ(Read(object.name), before) << object.name << " kept its value when refused";
    }
    EXPECT_TRUE(object.validator == nullptr || values.of_check)
        << "the check of " << object.name << " has no values here";
    EXPECT_EQ(Write(object.name, values.good), 0) << object.name << "=" << values.good;
    // The two 5G locks are read through the LTE lock's accessor.
    if (readable && strcmp(object.name, "lteLockband5g") != 0)
    {
        EXPECT_EQ(Read(object.name), values.good) << object.name;
    }
}

TEST(EveryObject, IsReadAndWritableOnesTakeGoodAndRefuseBadValues)
{
    SKIP_WITHOUT_NAMESPACES();
    ASSERT_EQ(system("rm -rf /tmp/state /tmp/kobd*"), 0);
    DaemonProcess daemon("/tmp/state");
    ASSERT_TRUE(daemon.Start());
    for (const ObjectEntry& object : kObjectRows)
    {
        const std::string value = Read(object.name);
        if (object.access == Access::kWriteOnly)
        {
            EXPECT_EQ(value, "(nothing)") << object.name;
        }
        else
            EXPECT_NE(value, "(nothing)") << object.name;
        if (object.access == Access::kAction)
        {
            EXPECT_EQ(value, "0") << object.name;
        }
        if (object.access == Access::kReadOnly)
        {
            EXPECT_EQ(Write(object.name, "1"), client::FindObject(object.name)->access == Access::kReadOnly ? 10 : 0);
        }
        else if (client::FindObject(object.name) == &object)
            CheckWritable(object);
    }
}
}  // namespace
}  // namespace kobd::test
