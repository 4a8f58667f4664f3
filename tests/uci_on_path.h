// Our uci for tests, at the front of PATH and run by the emulator where the build needs one: the
// shell belongs to the machine and cannot start the router's programs by itself.
#pragma once

#include <string>

namespace kobd::test
{
inline const std::string kUciFolder = "/tmp/uci-on-path/";

// Puts a script "uci" with these lines into kUciFolder and the folder at the front of PATH.
void PutScriptOnPath(const std::string& lines);

// The line of a script that becomes our uci.
std::string ExecUci();

inline void PutUciOnPath() { PutScriptOnPath(ExecUci()); }
}  // namespace kobd::test
