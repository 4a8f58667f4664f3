// Names and contents of messages.
#include "client/traffic/message_text.h"

#include <algorithm>
#include <cstring>

#include "client/dictionary/dictionary.h"
#include "client/dictionary/names.h"
#include "client/output/terminal.h"
#include "client/requests/request.h"
#include "daemon/base/messages.h"
#include "daemon/base/result.h"
#include "dictionary/catalogue/secrets.h"

namespace kobd::client
{
namespace
{
constexpr const char* kSecret = "(secret)";

struct NamedMessage
{
    uint32_t module;  // to which it goes
    uint16_t message_class;
    uint16_t id;
    const char* name;
};
constexpr NamedMessage kMessages[] = {
    {kModuleKobd, kClassRequest, kReqObjSet, "ReqObjSet"},
    {kModuleKobd, kClassRequest, kReqObjGet, "ReqObjGet"},
    {kModuleKobd, kClassRequest, kReqObjSetSilent, "ReqObjSetSilent"},
    {kModuleKobd, kClassRequest, kReqUpdate, "ReqUpdate"},
    {kModuleKobd, kClassRequest, kReqTableMaxRow, "ReqTableMaxRow"},
    {kModuleKobd, kClassRequest, kReqTableElementCount, "ReqTableElementCount"},
    {kModuleKobd, kClassRequest, kReqTableAdd, "ReqTableAdd"},
    {kModuleKobd, kClassRequest, kReqTableDel, "ReqTableDel"},
    {kModuleKobd, kClassRequest, kReqTableGet, "ReqTableGet"},
    {kModuleKobd, kClassRequest, kReqTableSet, "ReqTableSet"},
    {kModuleKobd, kClassRequest, kReqTableSetSilent, "ReqTableSetSilent"},
    {kModuleKobd, kClassRequest, kReqTableDump, "ReqTableDump"},
    {kModuleKobd, kClassRequest, kReqShow, "ReqShow"},
    {kModuleKobd, kClassRequest, kREQSubTableAdd, "REQSubTableAdd"},
    {kModuleNotify, kClassEvent, kEventObjectChanged, "object changed"},
    {kModuleNotify, kClassEvent, kEventTableChanged, "table changed"},
    {kModuleNotify, kClassEvent, kEventSetFinished, "set finished"},
    {kModuleNotify, kClassEvent, kEventRowAdded, "row added"},
    {kModuleNotify, kClassEvent, kEventRowDeleted, "row deleted"},
    {kModuleNotify, kClassEvent, kEventSubRowAdded, "row added under a parent"},
    {kModuleServices, kClassEvent, kEventConnectionChanged, "connection changed"},
};

const NetworkEvent* FindEvent(const kobd_tapped& message)
{
    if (message.message_class != kClassEvent) return nullptr;
    const auto found = std::ranges::find(kNetworkEvents, message.id, &NetworkEvent::id);
    return found == std::end(kNetworkEvents) ? nullptr : found;
}

// The text of a network event, which has no items. There may be none.
std::string EventText(kobd_bytes payload)
{
    return std::string(static_cast<const char*>(payload.next),
                       strnlen(static_cast<const char*>(payload.next), payload.left));
}

// Puts the items of a message together, one by one.
class ContentMaker
{
public:
    ContentMaker(const kobd_tapped& message, bool secrets)
        : secrets_(secrets), counts_(message.id == kReqTableMaxRow || message.id == kReqTableElementCount)
    {
    }

    void Add(const kobd_item& item)
    {
        const bool is_number = item.tag == KOBD_TAG_ROW_INDEX || (item.tag == KOBD_TAG_VALUE && counts_);
        const std::string text = is_number ? std::to_string(item.number) : item.text != nullptr ? item.text : "?";
        switch (item.tag)
        {
            case KOBD_TAG_OBJECT_NAME: return Begin("name", text, IsSecretObject(text));
            case KOBD_TAG_TABLE_NAME: return Begin("table", text, false);
            case KOBD_TAG_ROW_INDEX: return Detail("index", item.number, text);
            case KOBD_TAG_PARENT_PATH: return Detail("parent", text, text);
            case KOBD_TAG_COLUMN_NAME: return Column(text);
            case KOBD_TAG_VALUE: return Value(secret_ && !secrets_ ? kSecret : text, is_number);
            default: return Detail("tag" + std::to_string(item.tag), text, text);
        }
    }

    MessageContent content;

private:
    void Begin(const char* kind, const std::string& name, bool secret)
    {
        content.json.push_back({{kind, name}});
        content.text += " " + Escaped(name);
        column_.clear();
        secret_ = secret;
    }
    // What was named last: an object, a table, or nothing by name.
    Json& Thing()
    {
        if (content.json.empty()) content.json.push_back(Json::object());
        return content.json.back();
    }
    void Detail(const std::string& name, const Json& value, const std::string& text)
    {
        Thing()[name] = value;
        content.text += " " + Escaped(text);
    }
    void Column(const std::string& name)
    {
        Thing()["columns"][name] = nullptr;  // named alone, unless a value follows
        content.text += " " + Escaped(name);
        column_ = name;
        secret_ = IsSecretColumn(name);
    }
    void Value(const std::string& value, bool is_number)
    {
        const Json& thing = Thing();
        const bool named = !thing.empty();
        const std::string name = thing.value("name", "");
        const std::string table = thing.value("table", "");
        const Json json = is_number         ? NumberJson(value)
                          : column_.empty() ? ValueJson(kobd_describe(name.c_str()), value)
                                            : ValueJson(kobd_describe_column(table.c_str(), column_.c_str()), value);
        (column_.empty() ? Thing()["value"] : Thing()["columns"][column_]) = json;
        content.text += (named ? "=" : " ") + Escaped(value);
    }

    bool secrets_;
    bool counts_;          // values are numbers
    bool secret_ = false;  // the object or column that was named last
    std::string column_ = {};
};
}  // namespace

std::string ModuleName(uint32_t module)
{
    switch (module)
    {
        case kModuleKobd: return "kobd";
        case kModuleNotify: return "announcements";
        case kModuleServices: return "services";
        case kModuleForward: return "forwarded events";
        default: return ModuleText(module);
    }
}

std::string MessageName(const kobd_tapped& message)
{
    if (const NetworkEvent* event = FindEvent(message)) return event->name;
    for (const NamedMessage& one : kMessages)
        if (one.module == message.module && one.message_class == message.message_class && one.id == message.id)
            return one.name;
    return "message " + std::to_string(message.id);
}

Failure CheckPatterns(const Options& options, const Words& patterns)
{
    Words names = AllNames(kObjectRows);
    for (const Words& more : {AllNames(kTableRows), AllNames(kNetworkEvents)})
        names.insert(names.end(), more.begin(), more.end());
    for (const std::string& pattern : patterns)
        if (pattern.empty() || std::ranges::none_of(names, [&](const std::string& name)
                                                    { return MatchesName(pattern, name, options.exact_case); }))
            return {kNotFound, "no object, table or event matches '" + pattern + "'" + DidYouMean(pattern, names)};
    return {};
}

bool IsAskedFor(const Options& options, const Words& patterns, const kobd_tapped& message)
{
    if (patterns.empty()) return true;
    if (const NetworkEvent* event = FindEvent(message)) return MatchesAny(patterns, event->name, options.exact_case);
    kobd_bytes payload = message.payload;
    kobd_item item{};
    while (kobd_bytes_next(&payload, &item) == 1)
        if ((item.tag == KOBD_TAG_OBJECT_NAME || item.tag == KOBD_TAG_TABLE_NAME) && item.text != nullptr &&
            MatchesAny(patterns, item.text, options.exact_case))
            return true;
    return false;
}

MessageContent ContentOf(const kobd_tapped& message, bool secrets)
{
    ContentMaker maker(message, secrets);
    if (FindEvent(message) != nullptr)
    {
        const std::string text = EventText(message.payload);
        if (!text.empty()) maker.content = {" " + Escaped(text), Json::array({{{"text", text}}})};
    }
    else
    {
        kobd_bytes payload = message.payload;
        kobd_item item{};
        int more = 0;
        while ((more = kobd_bytes_next(&payload, &item)) == 1)
            if (item.tag != KOBD_TAG_RESULT) maker.Add(item);
        maker.content.whole = more == 0;
    }
    if (!maker.content.text.empty()) maker.content.text.erase(0, 1);
    return std::move(maker.content);
}

int ResultOf(const kobd_tapped& message)
{
    kobd_bytes payload = message.payload;
    kobd_item item{};
    return kobd_bytes_next(&payload, &item) == 1 && item.tag == KOBD_TAG_RESULT ? item.number : -1;
}
}  // namespace kobd::client
