// Items of tables as text for the log.
#include <cstdio>
#include <cstdlib>

#include "daemon/base/log.h"
#include "daemon/base/result.h"
#include "tables/change_items.h"

namespace kobd
{
namespace
{
const char* FormatOf(uint16_t tag)
{
    switch (tag)
    {
        case kTagObjectName: return "%s=";
        case kTagValue: return "'%s'\n";
        case kTagTableName: return "%s";
        case kTagColumnName: return "\t%s=";
        default: return nullptr;
    }
}

// Items that are not what their tag says, and tags that tables do not have, are named as such: a
// log that leaves them out would hide why a request was refused.
void Print(FILE* text, const TlvItem& item)
{
    const char* format = FormatOf(item.tag);
    const auto number = item.Int();
    if (item.tag == kTagResult && number)
        fprintf(text, "Result:%s\n", ResultText(*number));
    else if (item.tag == kTagRowIndex && number)
        fprintf(text, "[%d]:\n", *number);
    else if (format != nullptr && item.Text())
        fprintf(text, format, item.Text()->data());
    else
        fprintf(text, "(tag %u, %zu bytes)\n", item.tag, item.value.size());
}
}  // namespace

void TlvTableLog(std::span<const char> items, bool debug)
{
    if (!debug) return;
    char* bytes = nullptr;
    size_t size = 0;
    FILE* text = open_memstream(&bytes, &size);  // grows with what is printed
    if (text == nullptr) return;
    TlvReader reader(items);
    while (const auto item = reader.Next()) Print(text, *item);
    if (reader.Broken()) fputs("(an item runs past the end)\n", text);
    if (fclose(text) == 0) LOG_ALWAYS("TlvTableLog", "\n%s\n", bytes);
    free(bytes);
}
}  // namespace kobd
