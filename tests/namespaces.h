// Namespaces for test programs: log, switch file and dump files have fixed names in /tmp and queues
// have fixed keys, so tests that use them run apart from each other and from a developer's daemon.
#pragma once

#include <string>

namespace kobd::test
{
// True in IPC and mount namespaces of our own with an empty /tmp; tests that need it skip otherwise.
extern bool own_namespaces;

// Moves this process into such namespaces, once; sets own_namespaces, with a line that says so
// where that is not allowed. The folders of the built programs and of the sources are then found
// at kPrograms and kSources, also when they are under /tmp.
void EnterOwnNamespaces();

inline const std::string kPrograms = "/tmp/.programs/";
inline const std::string kSources = "/tmp/.sources/";

// The folder of the sources as this process finds it, for data that tests read.
std::string SourceFolder();
}  // namespace kobd::test

#define SKIP_WITHOUT_NAMESPACES() \
    if (!kobd::test::own_namespaces) GTEST_SKIP() << "needs IPC and mount namespaces of its own"
