// Faults of system calls for programs that a test starts: see preload_faults.h.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <string>

#include "tests/namespaces.h"
#include "tests/system/preload_faults.h"

namespace kobd::test
{
// Programs that this process starts while it lives get that library of the build folder before all others.
class Preloaded
{
public:
    explicit Preloaded(const std::string& library)
    {
        setenv("LD_PRELOAD", (kPrograms + library).c_str(), 1);
        setenv("ASAN_OPTIONS", "verify_asan_link_order=0", 1);
    }
    ~Preloaded()
    {
        unsetenv("LD_PRELOAD");
        unsetenv("ASAN_OPTIONS");
    }
    Preloaded(const Preloaded&) = delete;
    Preloaded& operator=(const Preloaded&) = delete;
};

// Programs that this process starts from here on can be struck, until the destructor. One at a time.
class InjectedFault
{
public:
    InjectedFault()
    {
        const int file = open(kFaultFile, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        void* place = MAP_FAILED;
        if (file >= 0 && ftruncate(file, sizeof(Fault)) == 0)
            place = mmap(nullptr, sizeof(Fault), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        if (place == MAP_FAILED) abort();
        close(file);
        fault_ = static_cast<Fault*>(place);
    }
    ~InjectedFault()
    {
        Disarm();
        munmap(fault_, sizeof(Fault));
        unlink(kFaultFile);
    }

    // From now on `times` calls of that kind fail, after `skip` that do not.
    //   path: pattern of fnmatch; error: errno or kShort
    void Arm(Call call, const std::string& path, int error, int times = INT_MAX, int skip = 0)
    {
        Disarm();
        fault_->path[path.copy(fault_->path, sizeof fault_->path - 1)] = 0;
        fault_->error = error;
        fault_->skip = skip;
        fault_->times = times;
        fault_->struck = 0;
        fault_->call = call;
    }
    void Disarm() { fault_->call = Call::kNone; }

    int Struck() const { return fault_->struck; }  // since Arm

private:
    Preloaded preloaded_{KOBD_FAULT_LIBRARY};
    Fault* fault_;
};
}  // namespace kobd::test

// Programs that are static or emulated load no library.
#define SKIP_WITHOUT_FAULTS()                            \
    SKIP_WITHOUT_NAMESPACES();                           \
    if (*KOBD_FAULT_LIBRARY == 0 || *KOBD_EMULATOR != 0) \
    GTEST_SKIP() << "nothing can be preloaded into this build's programs"
