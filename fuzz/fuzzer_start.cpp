// The start of a libFuzzer program: namespaces of its own, since log and dump files have fixed
// names and inputs may name any path.
#include <cstdio>
#include <cstdlib>

#include "fuzz/target.h"
#include "tests/namespaces.h"

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    kobd::test::EnterOwnNamespaces();
    if (!kobd::test::own_namespaces) exit(1);
    kobd::fuzz::Prepare();
    return 0;
}
