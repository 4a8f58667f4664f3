// Text helpers of the platform libraries.
#pragma once

extern "C"
{
    // Any value other than 0 when every character of `text` is a decimal digit, also for the empty
    // text; else 0. A C library may answer 2048, which a caller that declares it bool reads as false.
    int string_is_digits(const char* text);

    // Split `text` at every `separator` into consecutive slots of `slot_size` bytes each, at most
    // `slot_count` of them; a part that is too long is cut to slot_size - 1 characters. Returns the
    // number of parts. Empty parts count, except one at the end, behind the last separator; the
    // empty text has none. One library stops at the last slot, another counts on behind it: give one
    // slot more than the text may have parts to learn that it has too many.
    int parse_str_by_separator(const char* text, char separator, char* slots, int slot_size, int slot_count);
    int parseStrBySeparator(const char* text, char separator, char* slots, int slot_size, int slot_count);

    // Copies what stands before the first `separator` (a text) into `token`, at most token_size - 1
    // characters, and returns what follows the separator; without one the whole text is copied and
    // the end of the text returned.
    const char* split_str_by_sep(const char* text, const char* separator, char* token, int token_size);

    // Returns `text` with its letters a to z in upper case. Some libraries change it in place, others
    // may return a text of their own: callers use what is returned.
    char* StringUpper(char* text);

    // Reads six pairs of hexadecimal digits, separated by one ":" or "-" each, into six bytes.
    // 0, or -1 and the bytes unchanged when the text is none.
    int macStrToBin(const char* text, unsigned char* bytes);
}
