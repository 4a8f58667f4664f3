// Every exported function with any of its arguments missing: none crashes and none accepts.
#include <gtest/gtest.h>

#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "dictionary/name_index.h"
#include "tests/process_setup.h"
#include "tests/validators/all_checks.h"

namespace kobd::test
{
namespace
{
// What the function answers may say yes: isLanSegmentAddress compares a missing address as the negative
// value that it has, and the others have an argument that may be missing.
bool MayAccept(std::string_view name)
{
    return name == "isLanSegmentAddress" || name == "getSubnet" || name == "kobd_log_print" ||
           name == "kobd_send_message";
}

// An argument that is given: a text, a row or room for a result.
template <typename Argument>
Argument Given()
{
    static char room[16 * 512];
    static char text[] = "192.0.2.1";
    if constexpr (!std::is_pointer_v<Argument>)
        return Argument{1};
    else if constexpr (std::is_same_v<Argument, const char*>)
        return text;
    else
        return reinterpret_cast<Argument>(room);
}

template <typename Function, typename... Arguments, size_t... places>
void CallEach(std::string_view name, Function* function, std::tuple<Arguments...>*, std::index_sequence<places...>)
{
    constexpr unsigned kPointers = ((std::is_pointer_v<Arguments> ? 1U << places : 0U) | ... | 0U);
    for (unsigned missing = 1; missing <= kPointers; ++missing)
    {
        if ((missing & kPointers) != missing) continue;
        const auto call = [&] { return function((missing >> places & 1) != 0 ? Arguments{} : Given<Arguments>()...); };
        if constexpr (std::is_void_v<decltype(call())>)
            call();
        else
        {
            const bool zero = call() == 0;
            EXPECT_TRUE(zero == IsPredicate(name) || MayAccept(name)) << name << ", missing " << missing;
        }
    }
}

template <typename Result, typename... Arguments>
void CallWithMissing(std::string_view name, Result (&function)(Arguments...))
{
    CallEach(name, &function, static_cast<std::tuple<Arguments...>*>(nullptr), std::index_sequence_for<Arguments...>());
}

template <typename Result, typename... Arguments>
void CallWithMissing(std::string_view name, Result (&function)(Arguments..., ...))
{
    CallEach(name, &function, static_cast<std::tuple<Arguments...>*>(nullptr), std::index_sequence_for<Arguments...>());
}

template <typename Data>
requires(!std::is_function_v<Data>) void CallWithMissing(std::string_view, Data&)  // exported data has no arguments
{
}
}  // namespace

TEST(MissingArguments, AreRefusedByEveryExportedFunction)
{
    NameIndexBuild();
    OutputCapture output;
#define EXPORTED(name) CallWithMissing(#name, name);
#include "tests/system/exported_names.def"
#undef EXPORTED
    EXPECT_EQ(SnapshotGet("webHttpPort", nullptr), 2);
    EXPECT_EQ(getSubnet(nullptr, "255.255.255.0", "head"), -3);
    EXPECT_EQ(getSubnet("192.0.2.1", nullptr, "head"), -3);
    EXPECT_EQ(kobd_log_print("function", 1, nullptr), -1);
}
}  // namespace kobd::test
