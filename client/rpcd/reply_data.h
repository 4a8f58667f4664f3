// Data of commands as the methods of rpcd have always had them, where --json names a thing otherwise: pages and scripts
// on routers read them.
#pragma once

#include <vector>

#include "client/output/outcome.h"
#include "client/state/past_changes.h"

namespace kobd::client
{
// Of each check {"item", "verdict", "why"}.
Outcome WithChecks(Outcome outcome);

// Of an object "position" as a text; of a column "takes", and a meaning and a unit only where it has them.
Outcome WithDescriptions(Outcome outcome);

// "what" names an object, a row, a column of a row or a key in one text; old and new values are texts.
Json ChangesOf(const std::vector<PastChange>& changes);
}  // namespace kobd::client
