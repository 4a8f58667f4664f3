// Text helpers of the platform libraries.
#pragma once

extern "C"
{
    // True when every character of `text` is a decimal digit; the empty text is.
    bool string_is_digits(const char* text);
}
