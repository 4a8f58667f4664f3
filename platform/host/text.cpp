// Text helpers of the host platform.
#include "platform/text.h"

bool string_is_digits(const char* text)
{
    while (*text >= '0' && *text <= '9') ++text;
    return *text == 0;
}
