#include "web/browser.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern char** environ;

namespace kobd::web
{
namespace
{
bool WriteTo(int descriptor, const std::string& text)
{
    const bool written = write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    return close(descriptor) == 0 && written;
}

// 0, or an errno.
int RunXdgOpen(const std::string& path)
{
    char program[] = "xdg-open";
    char* words[] = {program, const_cast<char*>(path.c_str()), nullptr};
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    pid_t process = 0;
    const int code = posix_spawnp(&process, program, nullptr, &attributes, words, environ);
    posix_spawnattr_destroy(&attributes);
    return code;
}
}  // namespace

StartPage::StartPage(const std::string& address)
{
    if (address.empty()) return;
    const char* folder = getenv("XDG_RUNTIME_DIR");
    path_ = std::string(folder != nullptr && *folder != '\0' ? folder : "/tmp") + "/kobd-web-XXXXXX.html";
    const int descriptor = mkstemps(path_.data(), 5);  // of mode 0600
    const std::string page = "<!doctype html><meta http-equiv=\"refresh\" content=\"0;url=" + address + "\">\n";
    const bool written = descriptor >= 0 && WriteTo(descriptor, page);
    const int code = written ? RunXdgOpen(path_) : errno;
    if (descriptor < 0) path_.clear();
    if (code != 0) fprintf(stderr, "kobd-web: the browser cannot be opened: %s\n", strerror(code));
}

StartPage::~StartPage()
{
    if (!path_.empty()) unlink(path_.c_str());
}
}  // namespace kobd::web
