// Names that match a pattern, and "did you mean": the known name most like one that is not known.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace kobd::client
{
// Whether the name matches the pattern: as a shell matches * ? and [], or anywhere for a pattern without them.
bool MatchesName(const std::string& pattern, const std::string& name);

// The candidate fewest changed letters away from `name`, or the empty text when none is near. Upper
// and lower case count as the same letter.
std::string NearestOf(std::string_view name, std::span<const char* const> candidates);

// ", did you mean NEAR?" for the end of an error; the empty text when `near` is empty.
std::string DidYouMean(const std::string& near);
}  // namespace kobd::client
