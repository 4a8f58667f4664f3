// Dump files: read and removed without trusting the name that came over the bus.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "client/library/connection.h"
#include "client/library/explain.h"
#include "daemon/base/dump_file.h"
#include "daemon/base/result.h"

namespace kobd::client
{
namespace
{
bool IsDumpName(std::string_view path)
{
    if (!path.starts_with(kDumpFilePrefix)) return false;
    path.remove_prefix(std::string_view(kDumpFilePrefix).size());
    return !path.empty() && path.size() <= kDumpFileDigits && path.find_first_not_of("0123456789") == path.npos;
}

std::string SystemText(const std::string& what) { return what + ": " + strerror(errno); }

bool ReadAll(FILE* file, std::string* bytes)
{
    char part[16384];
    while (const size_t count = fread(part, 1, sizeof part, file)) bytes->append(part, count);
    return ferror(file) == 0;
}

// Reads and removes the open file. What went wrong, or the empty text.
std::string TakeOpen(FILE* file, const std::string& path, std::string* bytes)
{
    struct stat status;
    if (fstat(fileno(file), &status) != 0 || !S_ISREG(status.st_mode))
        return path + " is not a plain file; it was left alone";
    // Removed before it is read: reading may fail or be interrupted.
    if (unlink(path.c_str()) != 0) return SystemText("cannot remove the dump file " + path);
    return ReadAll(file, bytes) ? "" : SystemText("cannot read the dump file " + path);
}

// Another program may have sent the reply: only a plain file with the name of a dump file is read and removed, and no
// link is followed.
std::string Take(const std::string& path, std::string* bytes)
{
    if (!IsDumpName(path)) return "the reply names '" + path + "', which is no dump file; it was left alone";
    const int descriptor = open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    FILE* file = descriptor < 0 ? nullptr : fdopen(descriptor, "r");
    if (file == nullptr) return SystemText("cannot open the dump file " + path);
    const std::string wrong = TakeOpen(file, path, bytes);
    fclose(file);
    return wrong;
}
}  // namespace
}  // namespace kobd::client

int kobd_dump(kobd_client* client, enum kobd_request request, const kobd_items* items, kobd_bytes* content)
{
    using namespace kobd;
    using namespace kobd::client;
    *content = {};
    client->dump.clear();
    if (const int code = kobd_call(client, request, items)) return code;
    kobd_item item{};
    const bool named = kobd_reply_next(client, &item) == 1 && item.text != nullptr;
    std::string wrong = named ? Take(item.text, &client->dump) : "the reply names no file";
    // The daemon ends a table without a word where the router cannot give the next row.
    if (wrong.empty() && request == KOBD_TABLE_DUMP)
        if (const auto failed = AskWhatFailed(client)) wrong = "the router could not read all rows of " + failed->name;
    client->answered = true;
    if (!wrong.empty()) return Ended(client, {.code = kSystemError, .reason = wrong, .text = wrong});
    *content = {client->dump.data(), client->dump.size()};
    return Ended(client, kSuccess);
}
