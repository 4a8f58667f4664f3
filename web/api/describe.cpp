#include "web/api/describe.h"

namespace kobd::web
{
namespace
{
void AddText(Json* json, const char* key, const char* text)
{
    if (text != nullptr) (*json)[key] = text;
}

Json ChoicesOf(const kobd_description& description)
{
    Json choices = Json::array();
    for (size_t i = 0; i < description.choice_count; ++i) choices.push_back(description.choices[i]);
    return choices;
}
}  // namespace

Json DescriptionOf(const kobd_description& description)
{
    Json json = {{"name", description.name}, {"type", description.type}};
    json["readable"] = description.readable != 0;
    json["writable"] = description.writable != 0;
    for (const auto& [key, holds] : {std::pair{"number", description.is_number},
                                     {"flag", description.is_flag},
                                     {"secret", description.secret},
                                     {"action", description.is_action}})
        if (holds != 0) json[key] = true;
    if (description.has_range != 0) json["least"] = description.least;
    if (description.has_range != 0) json["most"] = description.most;
    if (description.choice_count > 0) json["choices"] = ChoicesOf(description);
    AddText(&json, "accepts", description.accepts);
    AddText(&json, "meaning", description.meaning);
    AddText(&json, "unit", description.unit);
    AddText(&json, "aliasOf", description.alias_of);
    return json;
}

Json DescriptionOf(const kobd_table_description& table)
{
    Json json = {{"name", table.name}};
    AddText(&json, "meaning", table.meaning);
    AddText(&json, "accepts", table.accepts);
    AddText(&json, "sameRowsAs", table.same_rows_as);
    json["maxRows"] = table.max_rows;
    json["can"] = Json::array();
    for (const auto& [word, holds] : {std::pair{"list", table.can_list},
                                      {"get", table.can_get},
                                      {"set", table.can_set},
                                      {"add", table.can_add},
                                      {"delete", table.can_delete},
                                      {"addBelow", table.can_add_below}})
        if (holds != 0) json["can"].push_back(word);
    json["columns"] = Json::array();
    for (size_t i = 0; i < table.column_count; ++i) json["columns"].push_back(DescriptionOf(*table.columns[i]));
    return json;
}

bool ObjectAt(size_t position, const kobd_description** object)
{
    const kobd_description* there = kobd_object_at(position);
    *object = there != nullptr && kobd_describe(there->name) == there ? there : nullptr;
    return there != nullptr;
}
}  // namespace kobd::web
