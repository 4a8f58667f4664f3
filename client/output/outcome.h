// What a command found or did, and the one place that prints it.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "client/arguments/command_line.h"
#include "client/arguments/input_file.h"
#include "client/library/kobd_client.h"

namespace kobd::client
{
using Json = nlohmann::ordered_json;  // its texts may be any bytes

// The data in one line of UTF-8.
std::string JsonLine(Json data);

// The text as a number, where it is an integer as JSON writes it.
Json NumberJson(const std::string& text);

// The value as its type has it: a number, true or false; a text where it is none. `of` may be nullptr: a text.
Json ValueJson(const kobd_description* of, const std::string& value);

// A time as the JSON of every command has it: seconds since 1970, with their microseconds.
Json TimeJson(int64_t microseconds);

// The values of objects by name, as their types have them.
Json ValuesJson(const Assignments& pairs);

// {"mistakes": [...]}: what is wrong with lines of a file, as {"line", "name", "value", "reason"} with name and value
// where they are known. Null where nothing is wrong.
Json MistakesJson(const LineErrors& errors);

struct [[nodiscard]] Outcome
{
    Outcome() = default;
    Outcome(Json json, std::string lines) : data(std::move(json)), text(std::move(lines)) {}
    Outcome(Failure why) : failure(std::move(why)) {}

    Json data = {};                       // for a program: --json prints it in one line, unless it is null
    std::string text = {};                // the same for a person, in whole lines
    std::vector<std::string> notes = {};  // lines for standard error: what is missing in the data, and why
    Failure failure = {};
    Json particulars = {};  // an object whose members --json adds to those of the failure
    int status = 0;         // exit status where nothing failed
};

// Prints the outcome, as JSON with an error where something is missing, and returns the exit status: 1 when something
// failed or is missing; 2 for wrong use; else the outcome's own. The line about a wrong use points to the help of
// `command`. A command that prints while it runs calls this for each part.
int Print(const Options& options, const Outcome& outcome, const std::string& command = "");

// Prints the line "kobctl: WHAT" on standard error.
void SayError(const std::string& what);

// Writes out what was printed. False when a part of it was lost; a line then says why, unless the reader is gone.
bool FlushOutput();

// Whether standard output is a pipe without a reader. A command that waits for something to print must ask, because
// it would wait for ever.
bool OutputClosed();

// From now on SIGINT and SIGTERM do not end the program: a command that has to tidy up asks for them.
void CatchInterrupts();
bool Interrupted();
}  // namespace kobd::client
