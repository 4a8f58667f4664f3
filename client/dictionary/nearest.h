// "Did you mean": the known name most like one that is not known.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace kobd::client
{
// The candidate fewest changed letters away from `name`, or the empty text when none is near. Upper
// and lower case count as the same letter.
std::string NearestOf(std::string_view name, std::span<const char* const> candidates);

// ", did you mean X?" for the end of an error, or the empty text when `near` is empty.
std::string DidYouMean(const std::string& near);
}  // namespace kobd::client
