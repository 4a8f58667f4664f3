// Scripts at the front of PATH, so that a shell finds the programs of the build, run by the emulator where the build
// needs one: the shell belongs to the machine and cannot start the router's programs by itself.
#pragma once

#include <string>

namespace kobd::test
{
inline const std::string kUciFolder = "/tmp/uci-on-path/";

// What runs a program of the build; empty where programs run by themselves.
std::string Emulator();

// Puts a script of that name with these lines into kUciFolder and the folder at the front of PATH.
void PutOnPath(const std::string& name, const std::string& lines);

// The line of a script that becomes that program of the build.
std::string Exec(const std::string& program);

inline std::string ExecUci() { return Exec("uci"); }
inline void PutScriptOnPath(const std::string& lines) { PutOnPath("uci", lines); }
inline void PutUciOnPath() { PutScriptOnPath(ExecUci()); }
}  // namespace kobd::test
