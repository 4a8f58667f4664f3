// What the gateway knows of values and rows, to say what they were before they changed.
#pragma once

#include <map>
#include <string>

#include "client/library/kobd_client.h"
#include "web/server/problem.h"

namespace kobd::web
{
// Ids of the daemon's announcements.
inline constexpr uint16_t kObjectChanged = 2;
inline constexpr uint16_t kRowsChanged = 3;
inline constexpr uint16_t kSetFinished = 4;
inline constexpr uint16_t kRowAdded = 799;
inline constexpr uint16_t kRowDeleted = 800;
inline constexpr uint16_t kSubRowAdded = 801;

class KnownValues
{
public:
    // Reads all objects and rows, but not the cellular tables, for which a router runs commands for seconds. Throws a
    // Problem when the daemon does not answer.
    void Read();

    // Forgets everything: announcements then have names alone.
    void Forget();

    // Whether the last Read has worked, and nothing was forgotten since.
    bool Knows() const { return knows_; }

    // Takes note of a request that passes the daemon, or of its answer: a set that is answered 0 has changed values.
    void Note(const kobd_tapped& message);

    // An announcement as an event of the gateway: a type and its data. An empty type: nothing to tell.
    struct Event
    {
        std::string type = {};
        Json data = Json::object();
    };
    Event EventOf(uint16_t id, kobd_bytes payload);

private:
    using Row = std::map<std::string, std::string>;

    Json ChangeOf(const std::string& name);
    Json ChangesOfRow(const std::string& table, int32_t index, kobd_bytes columns);
    Event RowEvent(uint16_t id, kobd_bytes payload);

    bool knows_ = false;
    std::map<std::string, std::string> values_ = {};
    std::map<std::string, std::string> asked_ = {};  // by the set in hand
    std::map<std::pair<std::string, int32_t>, Row> rows_ = {};
};
}  // namespace kobd::web
