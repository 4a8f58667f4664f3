// Scripts named uci.
#include "tests/uci_on_path.h"

#include <sys/stat.h>

#include <cstdlib>
#include <fstream>

#include "tests/namespaces.h"

namespace kobd::test
{
std::string ExecUci()
{
    const std::string emulator = KOBD_EMULATOR;  // empty where programs run by themselves
    return "exec " + emulator + " " + kPrograms + "uci \"$@\"\n";
}

void PutScriptOnPath(const std::string& lines)
{
    mkdir(kUciFolder.c_str(), 0700);
    std::ofstream(kUciFolder + "uci") << "#!/bin/sh\n" << lines;
    chmod((kUciFolder + "uci").c_str(), 0700);
    const std::string path = getenv("PATH") != nullptr ? getenv("PATH") : "/usr/bin:/bin";
    if (!path.starts_with(kUciFolder)) setenv("PATH", (kUciFolder + ":" + path).c_str(), 1);
}
}  // namespace kobd::test
