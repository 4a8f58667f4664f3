// One configuration as uci sees it: sections with a type, each with options, in the order in which
// they were made. A setting "NAME" holds the type of section NAME, the settings "NAME.OPTION"
// behind it hold its options. Names of options may contain dots, names of sections do not.
#pragma once

#include <string>
#include <string_view>

#include "host/uci/settings.h"

namespace kobd::host
{
// What a command names: CONFIG, CONFIG.SECTION or CONFIG.SECTION.OPTION.
struct UciName
{
    std::string config;
    std::string section;  // empty: the configuration as a whole
    std::string option;   // empty: the section as a whole

    std::string Key() const { return option.empty() ? section : section + "." + option; }
};

// False when a part is missing between dots or has a character that names do not have.
bool ParseUciName(std::string_view text, UciName* name);

// Letters, digits, "_" and "-", at least one.
bool IsUciType(std::string_view type);

// The type of a section or the value of an option; nullptr without it.
const std::string* FindSetting(const Settings& settings, const UciName& name);

// Makes or changes a section or an option. A section that is not there is made, with the name of
// the configuration as its type. An option that is given the empty text is removed, as on a router.
void ChangeSetting(Settings* settings, const UciName& name, std::string_view value);

// Makes a section under a name that this configuration does not have; the name.
std::string AddSection(Settings* settings, std::string_view type);

// Removes an option, or a section with its options. False when it is not there.
bool RemoveSetting(Settings* settings, const UciName& name);

// The lines that show prints: CONFIG.SECTION=TYPE and CONFIG.SECTION.OPTION='VALUE', a quote in a
// value as '\''.
std::string ShowSettings(const Settings& settings, std::string_view config);
}  // namespace kobd::host
