// Names, sections and options.
#include "host/uci/configuration.h"

#include <sys/random.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace kobd::host
{
namespace
{
constexpr uint32_t kNameDigitsMask = 0xFFFFFF;  // six hexadecimal digits

bool HasOnly(std::string_view text, std::string_view punctuation)
{
    const auto allowed = [punctuation](char c)
    {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
               punctuation.find(c) != std::string_view::npos;
    };
    return !text.empty() && std::all_of(text.begin(), text.end(), allowed);
}

// The part before the next dot, which is taken off with it. `more` tells whether there was one.
std::string_view TakePart(std::string_view* text, bool* more)
{
    const size_t dot = text->find('.');
    *more = dot != std::string_view::npos;
    const std::string_view part = text->substr(0, dot);
    text->remove_prefix(*more ? dot + 1 : text->size());
    return part;
}

auto FindKey(auto& settings, const std::string& key)
{
    return std::find_if(settings.begin(), settings.end(), [&key](const auto& one) { return one.first == key; });
}

bool BelongsTo(const std::string& key, const std::string& section)
{
    return key == section || (key.starts_with(section) && key[section.size()] == '.');
}

uint32_t RandomNumber()
{
    uint32_t number = 0;
    if (getrandom(&number, sizeof number, 0) != sizeof number) perror("uci: no random numbers");
    return number;
}
}  // namespace

bool ParseUciName(std::string_view text, UciName* name)
{
    bool more = false;
    name->config = TakePart(&text, &more);
    if (!HasOnly(name->config, "_-")) return false;
    if (!more) return true;
    name->section = TakePart(&text, &more);
    if (!HasOnly(name->section, "_")) return false;
    name->option = text;
    return !more || HasOnly(text, "_-.");
}

bool IsUciType(std::string_view type) { return HasOnly(type, "_-"); }

const std::string* FindSetting(const Settings& settings, const UciName& name)
{
    const auto found = FindKey(settings, name.Key());
    return found != settings.end() ? &found->second : nullptr;
}

void ChangeSetting(Settings* settings, const UciName& name, std::string_view value)
{
    const auto found = FindKey(*settings, name.Key());
    if (found != settings->end())
    {
        if (value.empty())
            settings->erase(found);
        else
            found->second = value;
        return;
    }
    if (value.empty()) return;
    if (FindKey(*settings, name.section) == settings->end())
        settings->emplace_back(name.section, name.option.empty() ? std::string(value) : name.config);
    if (name.option.empty()) return;
    auto end = FindKey(*settings, name.section);
    while (end != settings->end() && BelongsTo(end->first, name.section)) ++end;
    settings->emplace(end, name.Key(), value);
}

std::string AddSection(Settings* settings, std::string_view type)
{
    char name[sizeof "cfg123456"];
    // Not counted: options of a removed section may still stand under its name in another
    // configuration, and must not turn up in a new one.
    for (uint32_t number = RandomNumber();; ++number)
    {
        snprintf(name, sizeof name, "cfg%06x", static_cast<unsigned>(number & kNameDigitsMask));
        if (FindKey(*settings, name) == settings->end()) break;
    }
    settings->emplace_back(name, type);
    return name;
}

bool RemoveSetting(Settings* settings, const UciName& name)
{
    const auto removed = [&name](const auto& one)
    { return name.option.empty() ? BelongsTo(one.first, name.section) : one.first == name.Key(); };
    return std::erase_if(*settings, removed) != 0;
}

std::string ShowSettings(const Settings& settings, std::string_view config)
{
    std::string lines;
    for (const auto& [key, value] : settings)
    {
        lines.append(config).append(".").append(key).append("=");
        const bool option = key.find('.') != std::string::npos;
        if (option) lines += '\'';
        for (const char c : value) lines += c == '\'' ? std::string("'\\''") : std::string(1, c);
        if (option) lines += '\'';
        lines += '\n';
    }
    return lines;
}
}  // namespace kobd::host
