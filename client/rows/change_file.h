// Change files: the rows of a table set request, written by the client and read by the daemon.
#pragma once

#include <string>

#include "client/requests/request.h"

namespace kobd::client
{
// A change file that exists as long as this object. A signal that ends the program removes it too. Only one such object
// may exist at a time.
class ChangeFile
{
public:
    ChangeFile() = default;
    ChangeFile(const ChangeFile&) = delete;
    ChangeFile& operator=(const ChangeFile&) = delete;
    ~ChangeFile();

    // Creates the file under a fresh name with mode 0600 and writes the items.
    Failure Write(const Items& items);

    const std::string& Path() const { return path_; }

private:
    std::string path_;
};
}  // namespace kobd::client
