// The commands of kobctl, a file a group. Each returns the exit status: 0, 1 failed, 2 wrong use, 3 left open.
#pragma once

#include <string>
#include <vector>

#include "client/output/output.h"

namespace kobd::client
{
using Words = std::vector<std::string>;

int CommandGet(const Options& options, const Words& names);
int CommandSet(const Options& options, const Words& assignments);
int CommandCheck(const Options& options, const Words& assignments);
int CommandConfirm(const Options& options, const Words& none);
int CommandCommit(const Options& options, const Words& none);
int CommandBatch(const Options& options, const Words& file);
int CommandExport(const Options& options, const Words& file);
int CommandImport(const Options& options, const Words& file);
int CommandDoctor(const Options& options, const Words& none);
int CommandList(const Options& options, const Words& pattern);
int CommandDescribe(const Options& options, const Words& names);
int CommandShow(const Options& options, const Words& none);
int CommandWatch(const Options& options, const Words& patterns);
int CommandEvent(const Options& options, const Words& name_and_text);
int CommandJournal(const Options& options, const Words& none);
int CommandNvram(const Options& options, const Words& words);   // get KEY... or set KEY=VALUE...
int CommandConfig(const Options& options, const Words& words);  // likewise
int CommandTable(const Options& options, const Words& command);
int CommandHelp(const Options& options, const Words& command);
int CommandCompleteNames(const Options& options, const Words& kind);
}  // namespace kobd::client
