// Text helpers of the platform libraries.
#pragma once

extern "C"
{
    // True when every character of `text` is a decimal digit; the empty text is.
    bool string_is_digits(const char* text);

    // Split `text` at every `separator` into consecutive slots of `slot_size` bytes each, at most
    // `slot_count` of them; a part that is too long is cut to slot_size - 1 characters. Returns the
    // number of parts of the text, which may be more than there are slots. Empty parts count,
    // except one at the end, behind the last separator; the empty text has none.
    int parse_str_by_separator(const char* text, char separator, char* slots, int slot_size, int slot_count);
    int parseStrBySeparator(const char* text, char separator, char* slots, int slot_size, int slot_count);

    // Copies what stands before the first `separator` (a text) into `token`, at most token_size - 1
    // characters, and returns what follows the separator; without one the whole text is copied and
    // the end of the text returned.
    const char* split_str_by_sep(const char* text, const char* separator, char* token, int token_size);

    // Makes the letters a to z of `text` upper-case, in place; returns `text`.
    char* StringUpper(char* text);

    // Reads six pairs of hexadecimal digits, separated by one ":" or "-" each, into six bytes.
    // 0, or -1 and the bytes unchanged when the text is none.
    int macStrToBin(const char* text, unsigned char* bytes);
}
