// The dictionary as a YANG module: a leaf for each object, a list for each table.
#include <cctype>

#include "client/library/kobd_client.h"
#include "client/schema/schema.h"
#include "client/schema/value_schema.h"

namespace kobd::client
{
namespace
{
constexpr char kHead[] = R"(module kobd {
  yang-version 1.1;
  namespace "urn:kobd:router";
  prefix kobd;

  organization
    "kobd";
  contact
    "The maintainers of kobd";
  description
    "The objects and tables of a router.";

  revision 2026-11-25 {
    description
      "Objects and tables with their meanings and units.";
    reference
      "kobctl schema --yang";
  }

  extension name {
    argument name;
    description
      "The name of the object or column, where it is no identifier of YANG.";
  }
)";

std::string Quoted(const std::string& text)
{
    std::string out = "\"";
    for (const char letter : text) out += (letter == '"' || letter == '\\' ? "\\" : "") + std::string(1, letter);
    return out + "\"";
}

std::string Line(int depth, const std::string& text)
{
    return std::string(2 * static_cast<size_t>(depth), ' ') + text + "\n";
}

// A name that YANG takes: one that begins with a digit gets a "_", and "+" becomes "-plus".
std::string Identifier(const std::string& name)
{
    std::string out = isdigit(static_cast<unsigned char>(name[0])) != 0 ? "_" : "";
    for (const char letter : name) out += letter == '+' ? "-plus" : std::string(1, letter);
    return out;
}

// The narrowest type of YANG that holds the numbers from `least` to `most`.
const char* NumberType(int64_t least, int64_t most)
{
    if (least >= INT32_MIN && most <= INT32_MAX) return "int32";
    if (least >= 0 && most <= UINT32_MAX) return "uint32";
    return least < 0 ? "int64" : "uint64";
}

std::string TypeOf(int depth, const kobd_description& one)
{
    const std::string bounds =
        std::to_string(one.least) + ".." + (one.most == INT64_MAX ? "max" : std::to_string(one.most));
    if (one.is_number != 0)
        return Line(depth, std::string("type ") + NumberType(one.least, one.most) + " {") +
               Line(depth + 1, "range " + Quoted(bounds) + ";") + Line(depth, "}");
    std::string inner;
    for (size_t i = 0; i < one.choice_count; ++i) inner += Line(depth + 1, "enum " + Quoted(one.choices[i]) + ";");
    if (one.choice_count != 0) return Line(depth, "type enumeration {") + inner + Line(depth, "}");
    if (one.has_range != 0) inner += Line(depth + 1, "length " + Quoted(bounds) + ";");
    if (one.forbidden != nullptr)
        inner += Line(depth + 1, "pattern " + Quoted(std::string("[^") + one.forbidden + "]*") + ";");
    return inner.empty() ? Line(depth, "type string;") : Line(depth, "type string {") + inner + Line(depth, "}");
}

// `settable`: whether what is around it is, so that a leaf that is not must say so.
std::string LeafOf(int depth, const kobd_description& one, bool settable)
{
    const std::string name = Identifier(one.name);
    std::string text = Line(depth, "leaf " + name + " {");
    if (name != one.name) text += Line(depth + 1, "kobd:name " + Quoted(one.name) + ";");
    text += TypeOf(depth + 1, one);
    if (one.unit != nullptr) text += Line(depth + 1, "units " + Quoted(one.unit) + ";");
    if (settable && one.writable == 0) text += Line(depth + 1, "config false;");
    return text + Line(depth + 1, "description") + Line(depth + 2, Quoted(SentencesOf(one)) + ";") + Line(depth, "}");
}

std::string ListOf(int depth, const kobd_table_description& table)
{
    std::string text = Line(depth, "list " + Identifier(table.name) + " {") + Line(depth + 1, "key \"row-index\";");
    if (table.can_set == 0) text += Line(depth + 1, "config false;");
    text += Line(depth + 1, "max-elements " + std::to_string(table.max_rows) + ";");
    text += Line(depth + 1, "description") +
            Line(depth + 2, Quoted(table.meaning != nullptr ? table.meaning : "A table.") + ";");
    text += Line(depth + 1, "leaf row-index {") + Line(depth + 2, "type int32 {") +
            Line(depth + 3, "range \"0..max\";") + Line(depth + 2, "}") + Line(depth + 2, "description") +
            Line(depth + 3, "\"The index of the row, which the router gives.\";") + Line(depth + 1, "}");
    for (size_t i = 0; i < table.column_count; ++i) text += LeafOf(depth + 1, *table.columns[i], table.can_set != 0);
    return text + Line(depth, "}");
}

std::string Container(const char* name, const char* description, const std::string& content)
{
    return "\n" + Line(1, std::string("container ") + name + " {") + Line(2, "description") +
           Line(3, Quoted(description) + ";") + content + Line(1, "}");
}
}  // namespace

std::string YangModule()
{
    std::string objects;
    for (size_t i = 0; const kobd_description* object = kobd_object_at(i); ++i)
        if (kobd_describe(object->name) == object) objects += LeafOf(2, *object, true);
    std::string tables;
    for (size_t i = 0; const kobd_table_description* table = kobd_table_at(i); ++i) tables += ListOf(2, *table);
    return kHead + Container("objects", "Each has one value.", objects) +
           Container("tables", "Each has rows of columns.", tables) + "}\n";
}
}  // namespace kobd::client
