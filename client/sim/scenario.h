// Scenario files of kobctl sim run: what the imitated router is made to do, and when. A line a step, # begins a
// comment:
//
//   set NAME=VALUE...              row, fail, slow, clear: the same as kobctl sim ...
//   event NAME [TEXT]              as kobctl event
//   wait 5s                        a time: 500ms, 5s, 2m, 1h
//   over 30s NAME FROM..TO ...     the value goes from one number to the other
//   at 10s STEP                    this long after the start, or after the start of the round
//   repeat 3 ... end               the steps between, three rounds
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "client/arguments/input_file.h"
#include "client/requests/network_event.h"
#include "client/sim/step.h"

namespace kobd::client
{
// An object whose value goes from one number to another.
struct Course
{
    std::string name;
    double from;
    double to;
    int decimals;

    // The value after this share of the time, 0 to 1.
    std::string At(double share) const;
};

struct ScenarioStep
{
    size_t line;
    std::string text;  // as the file has it, without "at TIME"
    double at = 0;     // seconds since the start
    double lasts = 0;  // of wait and over
    std::optional<SimStep> sim = {};
    const NetworkEvent* event = nullptr;
    std::string event_text = {};
    std::vector<Course> courses = {};
};

struct Scenario
{
    std::string name;
    std::vector<ScenarioStep> steps = {};  // in their order; rounds one after the other
    double lasts = 0;                      // seconds
};

// Reads the file whole. Adds an error for every line that is wrong.
void ReadScenario(const InputFile& file, Scenario* scenario, LineErrors* errors);

struct ShippedScenario
{
    std::string name;
    std::string path;
    std::string summary;  // its first comment
};

// The scenarios that came with kobctl, by name.
std::vector<ShippedScenario> ShippedScenarios();

// Reads a file by its path, or a shipped scenario by its name.
Failure FindScenario(const std::string& name, InputFile* file);
}  // namespace kobd::client
