// Moving a test program into namespaces of its own.
#include "tests/namespaces.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace kobd::test
{
bool own_namespaces = false;

namespace
{
bool Bind(int folder, const std::string& place)
{
    const std::string source = "/proc/self/fd/" + std::to_string(folder);
    return mkdir(place.c_str(), 0700) == 0 && mount(source.c_str(), place.c_str(), nullptr, MS_BIND, nullptr) == 0;
}

bool Enter()
{
    if (unshare(CLONE_NEWIPC | CLONE_NEWNS) != 0 || mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        return false;
    // Opened within the new namespace, or they could not be mounted there.
    const int programs = open(KOBD_PROGRAMS, O_PATH | O_DIRECTORY | O_CLOEXEC);
    const int sources = open(KOBD_SOURCES, O_PATH | O_DIRECTORY | O_CLOEXEC);
    const bool mounted =
        mount("none", "/tmp", "tmpfs", 0, nullptr) == 0 && Bind(programs, kPrograms) && Bind(sources, kSources);
    close(programs);
    close(sources);
    // Where an emulator finds the loader and the C library of what it runs: beside the programs.
    if (getenv("QEMU_LD_PREFIX") != nullptr) setenv("QEMU_LD_PREFIX", (kPrograms + "sysroot").c_str(), 1);
    return mounted;
}
}  // namespace

std::string SourceFolder() { return own_namespaces ? kSources : KOBD_SOURCES "/"; }

void EnterOwnNamespaces()
{
    own_namespaces = Enter();
    if (!own_namespaces) perror("no namespaces of our own here, tests that need them are skipped");
}
}  // namespace kobd::test
