// What a watch knows of values and rows, to say what they were before they changed.
#pragma once

#include <optional>
#include <string>

#include "client/library/kobd_client.h"
#include "client/rows/table_rows.h"

namespace kobd::client
{
struct ValueChange
{
    std::string name;                     // of an object or column
    std::optional<std::string> old = {};  // nothing: it is not known
    std::optional<std::string> now = {};
};

class KnownValues
{
public:
    // Reads the objects, and the rows of the tables, that a pattern matches; all without patterns. The cellular tables
    // are left out: a router runs commands for seconds to read them.
    Failure Read(const Options& options, const Words& patterns);

    // Takes note of a message that passes the daemon: what a set asks for becomes known when it is answered 0.
    void Note(const kobd_tapped& message);

    // What an announcement says has changed: of an object its value, of a row the columns that it names. Reads from the
    // daemon what the messages before it did not say.
    std::vector<ValueChange> ChangesOf(const Options& options, const kobd_tapped& announcement);

private:
    Values values_ = {};
    Values asked_ = {};  // by the set in hand
    TableRows rows_ = {};
};
}  // namespace kobd::client
