#include "client/traffic/capture_file.h"

#include <fcntl.h>

#include <cstring>

#include "daemon/base/messages.h"
#include "dictionary/catalogue/secrets.h"

namespace kobd::client
{
namespace
{
constexpr uint32_t kMagic = 0xA1B2C3D4;  // pcap with microseconds
constexpr uint32_t kLinkType = 147;      // LINKTYPE_USER0: for private use

struct FileHeader
{
    uint32_t magic = kMagic;
    uint16_t major = 2;
    uint16_t minor = 4;
    int32_t zone = 0;
    uint32_t accuracy = 0;
    uint32_t longest = 65535;
    uint32_t link_type = kLinkType;
};

struct PacketHeader
{
    uint32_t seconds;
    uint32_t microseconds;
    uint32_t captured;  // bytes
    uint32_t length;
};

struct Particulars
{
    uint16_t kind;
    uint16_t missed;
    uint32_t process;
    uint64_t took_ns;
    char program[16];
};
static_assert(sizeof(Particulars) == 32);

// The message with stars in the place of secret values.
std::string Masked(const kobd_tapped& message)
{
    std::string bytes(static_cast<const char*>(message.message.next), message.message.left);
    kobd_bytes payload = {bytes.data() + kHeaderBytes, bytes.size() - kHeaderBytes};
    kobd_item item{};
    for (bool secret = false; kobd_bytes_next(&payload, &item) == 1;)
    {
        const std::string_view text = item.text != nullptr ? item.text : "";
        if (item.tag == KOBD_TAG_OBJECT_NAME) secret = IsSecretObject(text);
        if (item.tag == KOBD_TAG_COLUMN_NAME) secret = IsSecretColumn(text);
        if (item.tag == KOBD_TAG_VALUE && secret)
            bytes.replace(static_cast<size_t>(static_cast<const char*>(item.value) - bytes.data()), text.size(),
                          text.size(), '*');
    }
    return bytes;
}
}  // namespace

bool CaptureFile::Open(const std::string& path)
{
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    file_ = file >= 0 ? fdopen(file, "w") : nullptr;
    const FileHeader header;
    return file_ != nullptr && fwrite(&header, sizeof header, 1, file_) == 1 && fflush(file_) == 0;
}

bool CaptureFile::Add(const kobd_tapped& message, bool secrets)
{
    const std::string bytes =
        secrets ? std::string(static_cast<const char*>(message.message.next), message.message.left) : Masked(message);
    Particulars about = {.kind = static_cast<uint16_t>(message.kind),
                         .missed = static_cast<uint16_t>(message.missed < UINT16_MAX ? message.missed : UINT16_MAX),
                         .process = message.process,
                         .took_ns = message.took_ns,
                         .program = {}};
    strncpy(about.program, message.program, sizeof about.program - 1);
    const auto size = static_cast<uint32_t>(sizeof about + bytes.size());
    const PacketHeader packet = {static_cast<uint32_t>(message.time_us / 1'000'000),
                                 static_cast<uint32_t>(message.time_us % 1'000'000), size, size};
    return fwrite(&packet, sizeof packet, 1, file_) == 1 && fwrite(&about, sizeof about, 1, file_) == 1 &&
           fwrite(bytes.data(), 1, bytes.size(), file_) == bytes.size() && fflush(file_) == 0;
}

bool CaptureFile::Close()
{
    FILE* file = file_;
    file_ = nullptr;
    return file == nullptr || fclose(file) == 0;
}
}  // namespace kobd::client
