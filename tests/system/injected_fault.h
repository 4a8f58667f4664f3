// Faults of system calls for programs that a test starts: see preload_faults.h.
#pragma once

#include <climits>
#include <string>

#include "tests/system/preload_faults.h"

namespace kobd::test
{
class InjectedFault
{
public:
    // Programs that this process starts from here on can be struck, until the destructor. One at a time.
    InjectedFault();
    ~InjectedFault();
    InjectedFault(const InjectedFault&) = delete;
    InjectedFault& operator=(const InjectedFault&) = delete;

    // False where programs are static or emulated; a fault does nothing there and cannot be armed.
    static bool Possible();

    // From now on `times` calls of that kind fail, after `skip` that do not.
    //   path: pattern of fnmatch; error: errno or kShort
    void Arm(Call call, const std::string& path, int error, int times = INT_MAX, int skip = 0);
    void Disarm();

    int Struck() const;  // since Arm

private:
    Fault* fault_ = nullptr;
};
}  // namespace kobd::test

#define SKIP_WITHOUT_FAULTS()  \
    SKIP_WITHOUT_NAMESPACES(); \
    if (!kobd::test::InjectedFault::Possible()) GTEST_SKIP() << "nothing can be preloaded into this build's programs"
