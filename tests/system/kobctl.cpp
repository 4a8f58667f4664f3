// Running kobctl.
#include "tests/system/kobctl.h"

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "tests/namespaces.h"

namespace kobd::test
{
namespace
{
std::string Text(const char* path)
{
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}
}  // namespace

KobctlRun Kobctl(const std::string& arguments)
{
    const std::string command = "KOBD_STATE_DIR=/tmp/state " KOBD_EMULATOR " " + kPrograms + "kobctl " + arguments +
                                " >/tmp/kobctl.out 2>/tmp/kobctl.err";
    const int status = system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Text("/tmp/kobctl.out"), Text("/tmp/kobctl.err")};
}
}  // namespace kobd::test
