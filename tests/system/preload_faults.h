// One fault that a preloaded library makes in a real program: the test describes it in memory that
// both share, arms it while the program runs, and sees how often it struck.
#pragma once

#include <atomic>

namespace kobd::test
{
enum class Call : int
{
    kNone,
    kOpen,
    kRead,
    kWrite,
    kFsync,
    kFork,
    kSetQueue,  // msgctl with IPC_SET
};

inline constexpr char kFaultFile[] = "/tmp/fault";  // mapped by everybody; its bytes are one Fault
inline constexpr int kShort = 0;                    // instead of an errno: one byte at a time

struct Fault
{
    std::atomic<Call> call;  // kNone: nothing fails; written last
    char path[64];           // pattern of fnmatch, not looked at for kFork and kSetQueue
    int error;               // errno, or kShort
    std::atomic<int> skip;   // so many calls go well first
    std::atomic<int> times;  // then so many fail
    std::atomic<int> struck;
};
}  // namespace kobd::test
