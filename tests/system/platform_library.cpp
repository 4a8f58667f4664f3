// A library in the place of one of the platform's, loaded into the daemon before the host platform. KOBD_HOOK names
// what it does there: "visit" reports from update_config what it can reach in the daemon by name, the others go wrong
// in kobd_lib_init.
#include <pthread.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "tests/system/real_call.h"

namespace
{
const char* const kExported[] = {
#define EXPORTED(name) #name,
#include "tests/system/exported_names.def"
#undef EXPORTED
};

bool Is(const char* hook)
{
    const char* named = getenv("KOBD_HOOK");
    return named != nullptr && strcmp(named, hook) == 0;
}

template <typename Function>
Function* Exported(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_DEFAULT, name));
}

void Report(FILE* report)
{
    for (const char* name : kExported)
        if (dlsym(RTLD_DEFAULT, name) == nullptr) fprintf(report, "missing %s\n", name);
    char value[2048] = "";
    if (auto* snapshot = Exported<int(const char*, char*)>("SnapshotGet"))
        fprintf(report, "SnapshotGet %d %s\n", snapshot("webHttpPort", value), value);
    if (auto* valid = Exported<int(const char*)>("validIpv4"))
        fprintf(report, "validIpv4 %d %d\n", valid("192.0.2.1"), valid("192.0.2"));
    if (auto* print = Exported<int(const char*, int, const char*, ...)>("kobd_log_print"))
        print("visitor", 7, "called from %s", "a library");
    if (auto* send = Exported<int(...)>("kobd_send_message")) fprintf(report, "kobd_send_message %d\n", send(1, 2));
}

// Reads behind the end of a mapped file.
void* RaiseSigbus(void*)
{
    FILE* file = tmpfile();
    const void* place = mmap(nullptr, 1, PROT_READ, MAP_PRIVATE, fileno(file), 0);
    return reinterpret_cast<void*>(static_cast<long>(*static_cast<const volatile char*>(place)));
}

// How a child ends that had a SIGBUS before it ran another program.
void ForkOneThatFails()
{
    int status = 0;
    const pid_t child = fork();
    if (child == 0) RaiseSigbus(nullptr);
    waitpid(child, &status, 0);
    if (FILE* report = fopen("/tmp/visit", "w")) fprintf(report, "%d", WTERMSIG(status)), fclose(report);
}
}  // namespace

extern "C" int update_config()
{
    if (FILE* report = Is("visit") ? fopen("/tmp/visit", "w") : nullptr) Report(report), fclose(report);
    return REAL(update_config)();
}

extern "C" void kobd_lib_init()
{
    const time_t now = 0;
    tm local;
    pthread_t thread;
    if (Is("main")) RaiseSigbus(nullptr);
    if (Is("thread") && pthread_create(&thread, nullptr, RaiseSigbus, nullptr) == 0) pthread_join(thread, nullptr);
    if (Is("child")) ForkOneThatFails();
    if (Is("hang")) pause();
    if (Is("no threads"))
        for (;;) localtime_r(&now, &local);  // holds a lock of the C library that the log needs
}

extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*),
                              void* argument) __THROW
{
    static int calls = 0;
    if (Is("no threads") && calls++ < 2) return EAGAIN;
    return REAL(pthread_create)(thread, attributes, run, argument);
}
