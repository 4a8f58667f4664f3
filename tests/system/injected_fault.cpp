// The test's side of the memory that describes a fault.
#include "tests/system/injected_fault.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>

#include "tests/namespaces.h"

namespace kobd::test
{
namespace
{
const std::string kLibrary = KOBD_FAULT_LIBRARY;  // in the build folder; empty where programs are static
}

bool InjectedFault::Possible() { return own_namespaces && !kLibrary.empty() && std::string(KOBD_EMULATOR).empty(); }

InjectedFault::InjectedFault()
{
    if (!Possible()) return;
    const int file = open(kFaultFile, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    void* place = MAP_FAILED;
    if (file >= 0 && ftruncate(file, sizeof(Fault)) == 0)
        place = mmap(nullptr, sizeof(Fault), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (place == MAP_FAILED) abort();
    close(file);
    fault_ = static_cast<Fault*>(place);
    setenv("LD_PRELOAD", (kPrograms + kLibrary).c_str(), 1);
    setenv("ASAN_OPTIONS", "verify_asan_link_order=0", 1);
}

InjectedFault::~InjectedFault()
{
    if (fault_ == nullptr) return;
    Disarm();
    unsetenv("LD_PRELOAD");
    unsetenv("ASAN_OPTIONS");
    munmap(fault_, sizeof(Fault));
    unlink(kFaultFile);
}

void InjectedFault::Arm(Call call, const std::string& path, int error, int times, int skip)
{
    Disarm();
    fault_->path[path.copy(fault_->path, sizeof fault_->path - 1)] = 0;
    fault_->error = error;
    fault_->skip = skip;
    fault_->times = times;
    fault_->struck = 0;
    fault_->call = call;
}

void InjectedFault::Disarm() { fault_->call = Call::kNone; }

int InjectedFault::Struck() const { return fault_->struck; }
}  // namespace kobd::test
