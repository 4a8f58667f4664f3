// Where the host platform finds the command-line tool `uci`.
#pragma once

namespace kobd::host
{
// Puts the folder of our own uci at the end of PATH when no folder of PATH has a uci. Changes the
// environment: only before there are other threads.
void ProvideUci();
}  // namespace kobd::host
