// Types, ranges, lengths and choices as keywords of JSON Schema.
#include "client/schema/value_schema.h"

namespace kobd::client
{
namespace
{
constexpr int kBytesOfCharacter = 4;  // of UTF-8, at most

Json Choices(const kobd_description& description)
{
    Json choices = Json::array();
    for (size_t i = 0; i < description.choice_count; ++i) choices.push_back(description.choices[i]);
    return choices;
}

void AddNumber(const kobd_description& description, Json* schema)
{
    (*schema)["type"] = "integer";
    if (description.has_range == 0) return;
    (*schema)["minimum"] = description.least;
    if (description.most != INT64_MAX) (*schema)["maximum"] = description.most;
}

// JSON Schema counts characters, the router bytes: a character may have four of them.
void AddText(const kobd_description& description, Json* schema)
{
    (*schema)["type"] = "string";
    if (description.choice_count != 0) (*schema)["enum"] = Choices(description);
    if (description.has_range != 0)
    {
        if (description.least > 0)
            (*schema)["minLength"] = (description.least + kBytesOfCharacter - 1) / kBytesOfCharacter;
        (*schema)["maxLength"] = description.most;
    }
    if (description.forbidden != nullptr) (*schema)["pattern"] = std::string("^[^") + description.forbidden + "]*$";
}
}  // namespace

std::string SentencesOf(const kobd_description& description)
{
    std::string text = description.meaning != nullptr ? description.meaning + std::string(" ") : "";
    if (description.unit != nullptr) text += std::string("Unit: ") + description.unit + ". ";
    if (description.alias_of != nullptr) text += std::string("Another name of ") + description.alias_of + ". ";
    return text + "It takes " + description.accepts + ".";
}

Json SchemaOf(const kobd_description& description)
{
    Json schema = Json::object();
    if (description.is_number != 0)
        AddNumber(description, &schema);
    else
        AddText(description, &schema);
    schema["description"] = SentencesOf(description);
    if (description.writable == 0) schema["readOnly"] = true;
    if (description.readable == 0) schema["writeOnly"] = true;
    return schema;
}

Json Reference(const std::string& place, const std::string& name)
{
    std::string escaped;
    for (const char letter : name) escaped += letter == '+' ? "%2B" : std::string(1, letter);
    return {{"$ref", "#/" + place + "/" + escaped}};
}

Json ObjectSchemas()
{
    Json schemas = Json::object();
    for (size_t i = 0; const kobd_description* object = kobd_object_at(i); ++i)
        if (kobd_describe(object->name) == object) schemas[object->name] = SchemaOf(*object);
    return schemas;
}

Json ColumnSchemas(const kobd_table_description& table)
{
    Json schemas = Json::object();
    for (size_t i = 0; i < table.column_count; ++i) schemas[table.columns[i]->name] = SchemaOf(*table.columns[i]);
    return schemas;
}
}  // namespace kobd::client
