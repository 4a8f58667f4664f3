// Texts below 4 GiB: the heap on 32 bits, pages at low addresses elsewhere.
#include "host/tables/low_text.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

namespace kobd::host
{
namespace
{
constexpr size_t kPageBytes = 64 * 1024;  // holds all messages of a SIM
constexpr uint64_t kEnd = uint64_t{1} << 32;
// Where to ask: above programs linked to low addresses, below the sanitizers' own maps.
constexpr uint64_t kFirstPlace = 0x10000000;
constexpr uint64_t kLastPlace = 0x70000000;
constexpr uint64_t kPlaceStep = 0x1000000;

struct Pages
{
    char* free = nullptr;
    size_t left = 0;
};
Pages pages;

// An address is a wish: the system may choose another one, which is given back.
char* MapLow(size_t size)
{
    for (uint64_t place = kFirstPlace; place < kLastPlace; place += kPlaceStep)
    {
        void* wish = reinterpret_cast<void*>(static_cast<uintptr_t>(place));
        void* got = mmap(wish, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (got == MAP_FAILED) return nullptr;
        if (reinterpret_cast<uintptr_t>(got) + uint64_t{size} <= kEnd) return static_cast<char*>(got);
        munmap(got, size);
    }
    return nullptr;
}

char* Allocate(size_t size)
{
    if constexpr (sizeof(void*) == sizeof(uint32_t)) return static_cast<char*>(malloc(size));
    if (size > pages.left)
    {
        const size_t wanted = std::max(size, kPageBytes);
        pages = {MapLow(wanted), wanted};
        if (pages.free == nullptr) pages.left = 0;
        if (pages.free == nullptr) return nullptr;
    }
    char* place = pages.free;
    pages.free += size;
    pages.left -= size;
    return place;
}
}  // namespace

uint32_t LowText(std::string_view text)
{
    static std::map<std::string, uint32_t, std::less<>> kept;
    if (const auto found = kept.find(text); found != kept.end()) return found->second;
    char* place = Allocate(text.size() + 1);
    if (place == nullptr) return 0;
    memcpy(place, text.data(), text.size());
    place[text.size()] = 0;
    const auto address = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(place));
    kept.emplace(text, address);
    return address;
}
}  // namespace kobd::host
