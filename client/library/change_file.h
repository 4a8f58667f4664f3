// The file that a table set names, for as long as the request takes.
#pragma once

#include "client/library/connection.h"

namespace kobd::client
{
struct ChangeFilePlace;

// A change file of mode 0600 under a fresh name. It is gone with this object, and with kobd_remove_change_files.
class ChangeFile
{
public:
    ChangeFile();
    ChangeFile(const ChangeFile&) = delete;
    ChangeFile& operator=(const ChangeFile&) = delete;
    ~ChangeFile();

    // Creates the file and writes the items. False with errno.
    [[nodiscard]] bool Write(const kobd_items& items);

    const char* Path() const { return path_; }

private:
    int Create();

    ChangeFilePlace* place_ = nullptr;  // where a signal handler finds the path
    bool made_ = false;
    char path_[sizeof "/tmp/kobd-change-XXXXXX"] = "/tmp/kobd-change-XXXXXX";
};
}  // namespace kobd::client
