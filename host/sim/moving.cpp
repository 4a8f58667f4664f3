// The rows of moving.def by object and by column, and what they make of a value.
#include "host/sim/moving.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "daemon/base/messages.h"
#include "dictionary/catalogue/by_name.h"
#include "dictionary/row_field.h"
#include "host/sim/simulator.h"

namespace kobd::host
{
namespace
{
constexpr uint64_t kUpTime = 86412;  // seconds that the factory's counters have counted
constexpr const char* kClockForm = "%Y-%m-%dT%H:%M:%S";

enum class When
{
    Always,
    Cellular,
    Ethernet,
    Wan,
    NoCellular,
    NoWan,
};

enum class Way
{
    kSeconds,
    kCounts,
    kClock,
    kSince,
    kShows,
};

struct MovingRow
{
    std::string_view name;    // of the object or table
    std::string_view column;  // empty: an object
    Way way;
    When when;
    const char* text;
};

#define SECONDS(object, when) {object, "", Way::kSeconds, When::when, ""},
#define COUNTS(object, when) {object, "", Way::kCounts, When::when, ""},
#define CLOCK(object) {object, "", Way::kClock, When::Always, ""},
#define SINCE(object, network) {object, "", Way::kSince, When::network, ""},
#define SHOWS(object, when, text) {object, "", Way::kShows, When::when, text},
#define SECONDS_IN(table, column, when) {table, column, Way::kSeconds, When::when, ""},
#define COUNTS_IN(table, column, when) {table, column, Way::kCounts, When::when, ""},
#define SHOWS_IN(table, column, when, text) {table, column, Way::kShows, When::when, text},
constexpr MovingRow kMoving[] = {
#include "host/factory/moving.def"
};

constexpr size_t kNone = kNoNumber;

// By its place: sanitized builds compare no addresses at compile time.
constexpr size_t ColumnIn(const RowLayout& layout, std::string_view name)
{
    for (size_t column = 0; column < layout.columns.size(); ++column)
        if (layout.columns[column].name == name) return column;
    return kNone;
}

// A row by the numbers of the catalogue.
struct Moving
{
    size_t number;  // of the object or table
    size_t column;  // kNone: an object
};

constexpr auto kMovingOf = []
{
    std::array<Moving, std::size(kMoving)> numbered{};
    for (size_t i = 0; i < numbered.size(); ++i)
    {
        const MovingRow& row = kMoving[i];
        const bool object = row.column.empty();
        const size_t number = object ? NumberIn(kObjectNames, row.name) : NumberIn(kTableNames, row.name);
        if (number == kNone) abort();  // ends the build: no object or table has that name
        const size_t column = object ? kNone : ColumnIn(kTableRows[number].layout, row.column);
        if (!object && column == kNone) abort();                                         // the table has no such column
        if (!object && row.way == Way::kShows && kTableRows[number].Has(kSet)) abort();  // a set would not be read
        numbered[i] = {number, column};
    }
    return numbered;
}();

// The first row of each object or table, and the next of the same one behind each row.
template <size_t kCount>
struct Chains
{
    std::array<size_t, kCount> first{};
    std::array<size_t, kMovingOf.size()> next{};

    constexpr explicit Chains(bool columns)
    {
        first.fill(kNone);
        for (size_t i = kMovingOf.size(); i-- > 0;)
        {
            if ((kMovingOf[i].column != kNone) != columns) continue;
            next[i] = first[kMovingOf[i].number];
            first[kMovingOf[i].number] = i;
        }
    }

    // Calls `with` for each row of the object or table, and its column.
    template <class With>
    void ForRows(size_t number, With with) const
    {
        for (size_t i = first[number]; i != kNone; i = next[i])
        {
            const size_t column = kMovingOf[i].column;
            with(kMoving[i], column == kNone ? nullptr : &kTableRows[number].layout.columns[column]);
        }
    }
};
constexpr Chains<kObjectRows.size()> kObjectChains(false);
constexpr Chains<kTableRows.size()> kTableChains(true);

// One network, and how long it has been up.
struct Network
{
    bool up;
    uint64_t before = 0;   // seconds until it last came or went
    uint64_t changed = 0;  // when it did, in seconds since the start; 0: never
    uint64_t Seconds(uint64_t now) const { return before + (up ? now - changed : 0); }
    void Turn(bool on, uint64_t now)
    {
        if (up == on) return;
        *this = {on, Seconds(now), now};
    }
};

struct State
{
    uint64_t start = 0;  // on a clock that nobody sets, in seconds
    Network cellular = {true};
    Network ethernet = {false};
    Network wan = {true};
    int64_t clock_ahead = 0;            // of the system's clock, in seconds
    bool clock_stands = false;          // it was set to a text that is no time
    std::set<size_t> set_by_hand = {};  // objects, since the last network event
};
State state;

bool IsStill()
{
    static const bool still = []
    {
        const char* given = getenv("KOBD_STILL");
        return given != nullptr && std::string_view(given) == "1";
    }();
    return still;
}

uint64_t Monotonic()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint64_t>(now.tv_sec);
}

uint64_t Now() { return Monotonic() - state.start; }

bool Holds(When when)
{
    switch (when)
    {
        case When::Always: return true;
        case When::Cellular: return state.cellular.up;
        case When::Ethernet: return state.ethernet.up;
        case When::Wan: return state.wan.up;
        case When::NoCellular: return !state.cellular.up;
        case When::NoWan: return !state.wan.up;
    }
    return false;
}

// For how many of the seconds since the start that held.
uint64_t SecondsOf(When when)
{
    const uint64_t now = Now();
    switch (when)
    {
        case When::Cellular: return state.cellular.Seconds(now);
        case When::Ethernet: return state.ethernet.Seconds(now);
        case When::Wan: return state.wan.Seconds(now);
        default: return now;
    }
}

uint64_t Grown(Way way, uint64_t value, uint64_t seconds)
{
    if (way == Way::kSeconds) return value + seconds;
    return value + static_cast<uint64_t>(static_cast<double>(value) / kUpTime * static_cast<double>(seconds));
}

// False for a text that is no number.
bool ReadCount(std::string_view text, uint64_t* count)
{
    if (text.empty() || text.size() > 19 || text.find_first_not_of("0123456789") != text.npos) return false;
    *count = strtoull(std::string(text).c_str(), nullptr, 10);
    return true;
}

std::string TimeOfDay()
{
    const time_t now = time(nullptr) + static_cast<time_t>(state.clock_ahead);
    tm local = {};
    localtime_r(&now, &local);
    char text[64];
    return {text, strftime(text, sizeof text, kClockForm, &local)};
}

void SetClock(std::string_view text)
{
    tm given = {};
    const std::string copy(text);
    const char* end = strptime(copy.c_str(), kClockForm, &given);
    given.tm_isdst = -1;
    const time_t then = end != nullptr && *end == 0 ? mktime(&given) : -1;
    state.clock_stands = then == -1;
    if (!state.clock_stands) state.clock_ahead = static_cast<int64_t>(then) - static_cast<int64_t>(time(nullptr));
}

std::string TextIn(const void* row, const ColumnDef& column)
{
    static std::array<char, kFieldTextMax> buffer;
    return std::string(FieldText(row, column, buffer));
}
}  // namespace

void MarkMoving(SimMarks* marks)
{
    *marks = {};
    if (IsStill()) return;
    for (const Moving& moving : kMovingOf)
        (moving.column == kNone ? marks->object[moving.number] : marks->table[moving.number]) = 1;
}

void MovingStart()
{
    state = {};
    state.start = Monotonic();
    MarkMoving(&sim_marks);
}

void MovingEvent(uint32_t code)
{
    struct Turn
    {
        NetworkEventId event;
        Network* network;
        bool on;
    };
    if ((code & UINT16_MAX) != kClassEvent) return;
    static const Turn kTurns[] = {
        {kEvtNetworkUp, &state.cellular, true},     {kEvtNetworkDown, &state.cellular, false},
        {kEvtEthernetUp, &state.ethernet, true},    {kEvtEthernetIPAdd, &state.ethernet, true},
        {kEvtEthernetDown, &state.ethernet, false}, {kEvtEthernetIPDel, &state.ethernet, false},
    };
    for (const Turn& turn : kTurns)
    {
        if (code != MessageCode(turn.event, kClassEvent)) continue;
        turn.network->Turn(turn.on, Now());
        state.wan.Turn(state.cellular.up || state.ethernet.up, Now());
        state.set_by_hand.clear();
    }
}

std::vector<std::pair<std::string, std::string>> Networks()
{
    if (IsStill()) return {};
    return {{"cellular", state.cellular.up ? "up" : "down"}, {"ethernet", state.ethernet.up ? "up" : "down"}};
}

std::string MovedText(size_t object, std::string_view text)
{
    std::string moved(text);
    bool done = IsStill();
    kObjectChains.ForRows(
        object,
        [&](const MovingRow& row, const ColumnDef*)
        {
            uint64_t count = 0;
            if (done || (row.way == Way::kShows && (!Holds(row.when) || state.set_by_hand.contains(object)))) return;
            done = true;
            if (row.way == Way::kShows)
                moved = row.text;
            else if (row.way == Way::kClock)
                moved = state.clock_stands ? moved : TimeOfDay();
            else if (ReadCount(text, &count) && row.way == Way::kSince)
                moved = std::to_string(state.cellular.changed == 0 ? count + Now() : Now() - state.cellular.changed);
            else if (ReadCount(text, &count))
                moved = std::to_string(Grown(row.way, count, SecondsOf(row.when)));
        });
    return moved;
}

void MovingIsSet(size_t object, std::string_view text)
{
    kObjectChains.ForRows(object,
                          [&](const MovingRow& row, const ColumnDef*)
                          {
                              if (row.way == Way::kClock) SetClock(text);
                              if (row.way == Way::kShows) state.set_by_hand.insert(object);
                          });
}

void MovedRows::HandOut(size_t table, void* row, const std::set<const ColumnDef*>* still)
{
    if (IsStill() || kTableChains.first[table] == kNone) return;
    const int32_t index = RowIndex(row);
    kTableChains.ForRows(
        table,
        [&](const MovingRow& moves, const ColumnDef* moving)
        {
            const ColumnDef& column = *moving;
            if (still != nullptr && still->contains(&column)) return;
            uint64_t count = 0;
            std::string text = moves.text;
            if (moves.way == Way::kShows)
            {
                if (!Holds(moves.when)) return;
            }
            else
            {
                if (!ReadCount(TextIn(row, column), &count) || count == 0) return;
                const auto since = since_.find({index, &column});
                const uint64_t seconds = SecondsOf(moves.when) - (since == since_.end() ? 0 : since->second);
                text = std::to_string(Grown(moves.way, count, seconds) %
                                      (FormOf(column).width == sizeof(uint32_t) ? uint64_t{1} << 32 : UINT64_MAX));
            }
            static_cast<void>(TableFieldFromString(row, column, text.c_str()));
        });
    if (kTableRows[table].Has(kSet))
        handed_[index].assign(static_cast<const char*>(row),
                              static_cast<const char*>(row) + kTableRows[table].layout.row_size);
}

void MovedRows::TakeBack(size_t table, const void* kept, void* row)
{
    if (IsStill()) return;
    const int32_t index = RowIndex(row);
    const auto handed = handed_.find(index);
    kTableChains.ForRows(table,
                         [&](const MovingRow& moves, const ColumnDef* moving)
                         {
                             const ColumnDef& column = *moving;
                             if (handed != handed_.end() && IsSameField(column, handed->second.data(), row))
                                 CopyField(column, kept, row);
                             else if (!IsSameField(column, kept, row))
                                 since_[{index, &column}] = SecondsOf(moves.when);
                         });
}
}  // namespace kobd::host
