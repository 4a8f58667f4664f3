// What the functions that answer need beside the bus.
#pragma once

#include <string>

#include "web/api/scenario_run.h"
#include "web/server/connections.h"

namespace kobd::web
{
struct Services
{
    Connections& connections;
    ScenarioRun& scenario;
    std::string kobctl;  // its path
};
}  // namespace kobd::web
