// Rows that a client has the imitated router show. They stand in the list like others; what is remembered of them here
// is how the list really is: for the database, and for the end of the simulation.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "dictionary/row_layout.h"
#include "host/sim/simulator.h"
#include "host/tables/row_list.h"

namespace kobd::host
{
struct List;

struct SimulatedRow
{
    std::optional<Row> real;                  // nothing: there is no such row
    std::set<const ColumnDef*> columns = {};  // that are simulated
};

struct SimulatedRows
{
    std::map<int32_t, SimulatedRow> rows = {};  // by index
    std::optional<int32_t> last_index = {};     // the highest that was really given; nothing: as the list says
};

using ColumnTexts = std::vector<std::pair<std::string, std::string>>;

// -- clients simulate

// 0 and, of a new row, its index; 2 a column cannot hold its text; 12 no such column; 13 no such row; 15 the list is
// full. Nothing has changed where it is not 0.
int SimulateAdd(List* list, const ColumnTexts& columns, int32_t* index);
int SimulateSet(List* list, int32_t index, const ColumnTexts& columns);
int SimulateDel(List* list, int32_t index);

// Makes all lists what they really are.
void EndSimulatedRows();

// -- the list asks

// The row as it really is; nullptr: there is none.
Row* RealRow(List& list, int32_t index);
int32_t RealLastIndex(const List& list);

// The columns of the row that are simulated, or nullptr.
const std::set<const ColumnDef*>* SimulatedColumns(const List& list, int32_t index);

// The row is about to be really set to `next`. Returns the real row, and puts what it would be handed out with into the
// simulated columns that come back as they are shown; what is simulated of the others is over. A row that is only
// simulated becomes real.
Row* RowToSet(List* list, int32_t index, std::vector<char>* next);

// Behind it: the list shows the real row, with the columns that are still simulated.
void ShowAgain(List* list, int32_t index);

// The row was really added, or is deleted: nothing of it is simulated any more.
void RowIsReal(List* list, int32_t index);

// The rows that are simulated, for a client.
std::vector<SimLine> SimulatedRowLines();
}  // namespace kobd::host
