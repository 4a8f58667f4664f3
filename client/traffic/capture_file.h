// Messages in a file that network analysers read (pcap, link type 147). docs/kobd.lua takes the packets apart:
//
//   | kind u16 | missed u16 | process u32 | took u64, nanoseconds | program, 16 bytes | message with its header |
//
// in the byte order of the machine, which the file's own header tells.
#pragma once

#include <cstdio>
#include <string>

#include "client/library/kobd_client.h"

namespace kobd::client
{
class CaptureFile
{
public:
    CaptureFile() = default;
    ~CaptureFile() { (void)Close(); }
    CaptureFile(const CaptureFile&) = delete;
    CaptureFile& operator=(const CaptureFile&) = delete;

    // Makes the file, mode 0600, in the place of an earlier one. False with errno.
    [[nodiscard]] bool Open(const std::string& path);

    // Adds a message; unless `secrets`, the values of passwords, keys and PINs become stars of the same length. False
    // with errno.
    [[nodiscard]] bool Add(const kobd_tapped& message, bool secrets);

    // False with errno when something is not in the file. Harmless twice.
    [[nodiscard]] bool Close();

private:
    FILE* file_ = nullptr;
};
}  // namespace kobd::client
