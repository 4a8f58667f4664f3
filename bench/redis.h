// A redis that syncs each command to the disk, to compare a commit with. Used only where redis-server is installed.
#pragma once

#include <sys/types.h>

#include <string>

namespace kobd::bench
{
class Redis
{
public:
    // Starts redis-server in the folder, for one user on a socket there. Runs() says whether that worked.
    explicit Redis(const std::string& folder);
    ~Redis();  // ends it
    Redis(const Redis&) = delete;
    Redis& operator=(const Redis&) = delete;

    bool Runs() const { return socket_ >= 0; }

    // Sets a key to this value and waits for the answer: it is on the disk then. Aborts when it is not.
    void Set(const std::string& value);

private:
    pid_t process_ = -1;
    int socket_ = -1;
};
}  // namespace kobd::bench
