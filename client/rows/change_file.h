// Change files: the rows of a table set request, written by the client and read by the daemon.
#pragma once

#include <string>

#include "client/requests/request.h"

namespace kobd::client
{
// A change file that exists as long as this object. It is also removed when a signal that ends the
// program arrives meanwhile. One at a time.
class ChangeFile
{
public:
    ChangeFile() = default;
    ChangeFile(const ChangeFile&) = delete;
    ChangeFile& operator=(const ChangeFile&) = delete;
    ~ChangeFile();

    // Creates the file, mode 0600 under a fresh name, and writes the items. The error, or the empty
    // text.
    [[nodiscard]] std::string Write(const Items& items);

    const std::string& Path() const { return path_; }

private:
    std::string path_;
};
}  // namespace kobd::client
