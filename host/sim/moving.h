// What moves by itself: host/factory/moving.def, the two networks, and the time since the start. With KOBD_STILL=1 in
// the environment nothing does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dictionary/row_layout.h"

namespace kobd::host
{
struct SimMarks;

// Marks the objects and tables that move, and takes all other marks away.
void MarkMoving(SimMarks* marks);

// Time begins: the state was loaded, and the router has started.
void MovingStart();

// The bus brought a message with this code; network events change what is shown.
void MovingEvent(uint32_t code);

// "cellular up", "ethernet down"; empty for a router that stands still.
std::vector<std::pair<std::string, std::string>> Networks();

// What an object shows whose own value is `text`.
std::string MovedText(size_t object, std::string_view text);

// The object was set to `text`, which it shows from here on; the clock goes on from there.
void MovingIsSet(size_t object, std::string_view text);

// What of the rows of one list was handed out as it had moved, so that it can come back.
class MovedRows
{
public:
    // Moves the columns of the row, which is about to be handed out, except those in `still`.
    void HandOut(size_t table, void* row, const std::set<const ColumnDef*>* still);

    // A row that was read and changed is set: columns that come back as they were handed out get what `kept` has; the
    // others count from here.
    void TakeBack(size_t table, const void* kept, void* row);

private:
    std::map<int32_t, std::vector<char>> handed_ = {};                     // by index
    std::map<std::pair<int32_t, const ColumnDef*>, uint64_t> since_ = {};  // seconds that the column has not counted
};
}  // namespace kobd::host
