// What the daemon exports to the platform libraries loaded into it, besides the validators. Any pointer
// may be missing (nullptr): a missing text reads as the empty text unless its function says otherwise.
#pragma once

extern "C"
{
    // Writes one stamped line to standard output and to the log file.
    //   function: name of the caller; line: its line number; format: as printf
    // 0 when the line was formatted, -1 when formatting failed or there is no format.
    int kobd_log_print(const char* function, int line, const char* format, ...) __attribute__((format(printf, 3, 4)));

    // 1 while the debug switch file exists, else 0; asks the file system on every call.
    int kobd_log_level();

    // Does nothing and returns 0, whatever it is given.
    int kobd_send_message(...);

    // Ends the daemon with status 0, as the signal of that number would. Does not return to a library that
    // calls it.
    void sig_handler(int signal);

    // The value that `name` will have after the set request in hand, as zero-terminated text.
    //   value: the caller's buffer, not cleared; it must hold whatever a client may have sent for
    //   the object (up to 8192 bytes), for nothing bounds the copy. The daemon's own validators use
    //   SnapshotRead instead.
    // 0; 1 unknown or a table; 2 no room for the value (nullptr); 16 nothing to read; else the
    // accessor's code.
    int SnapshotGet(const char* name, char* value);

    // 1 when one of the first `count` characters of `set` occurs in `text`, else 0.
    int includeForbiddenCharacter(const char* text, const char* set, int count);
}
