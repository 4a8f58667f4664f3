// Runs commands through the shell and takes what they print.
#pragma once

#include <cstddef>

extern "C"
{
    // Runs `command` and puts all it prints on standard output into `output` as text, at most
    // `size` bytes with the zero byte; the rest is read and dropped. The command's exit status, or
    // -1 when it could not be run; `output` is then empty.
    int shell_cmd_return_file_all(const char* command, char* output, size_t size);

    // As above for one line: `output` is the first line printed, without its line end.
    int shell_cmd_return_str(const char* command, char* output, size_t size);
}
