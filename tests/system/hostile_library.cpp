// A library in the place of one of the platform's, whose hook does what KOBD_HOOK names and goes wrong.
#include <dlfcn.h>
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

#ifndef __THROW  // what glibc says in C++ of functions that throw nothing, and musl does not
#define __THROW
#endif

namespace
{
bool Is(const char* hook)
{
    const char* named = getenv("KOBD_HOOK");
    return named != nullptr && strcmp(named, hook) == 0;
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
    if (FILE* report = fopen("/tmp/visit", "w")) fprintf(report, "%d", status), fclose(report);
}
}  // namespace

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
    auto* next = reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    return next(thread, attributes, run, argument);
}
