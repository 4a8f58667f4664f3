// Scripts in the place of programs.
#include "tests/uci_on_path.h"

#include <sys/stat.h>

#include <cstdlib>
#include <fstream>

#include "tests/namespaces.h"

namespace kobd::test
{
std::string Emulator()
{
    const char* told = getenv("KOBD_EMULATOR");
    return told != nullptr ? told : KOBD_EMULATOR;
}

std::string Exec(const std::string& program) { return "exec " + Emulator() + " " + kPrograms + program + " \"$@\"\n"; }

void PutOnPath(const std::string& name, const std::string& lines)
{
    mkdir(kUciFolder.c_str(), 0755);
    std::ofstream(kUciFolder + name) << "#!/bin/sh\n" << lines;
    chmod((kUciFolder + name).c_str(), 0755);
    const std::string path = getenv("PATH") != nullptr ? getenv("PATH") : "/usr/bin:/bin";
    if (!path.starts_with(kUciFolder)) setenv("PATH", (kUciFolder + ":" + path).c_str(), 1);
}
}  // namespace kobd::test
