// Which official warnings a place has, in the words of a language. Pure.
#pragma once

#include "base/time/calendar.h"
#include "base/words/texts.h"
#include "feeds/alerts/coverage.h"

#include <string>
#include <vector>

namespace nimbara {

/// Whether warnings that nobody can locate are named behind the sentence; not where they are listed.
enum class UnplacedNames { given, left };

/// "2 official warnings, checked 14:20", "Official warnings could not be checked since 13:05, because …",
/// without a full stop; followed by which source answered because another one was unavailable. Moments are
/// given in the calendar's time.
std::string coverageText(SourceCoverage const& coverage, Texts const& texts, Calendar const& calendar,
                         Instant now, UnplacedNames names = UnplacedNames::given);

/// That the source behind the first gave no answer either, without a full stop; `coverage.alsoAsked` is
/// given.
std::string alsoAskedText(SourceCoverage const& coverage, Texts const& texts);

/// When a line begins with its service's name: where there are several, or always.
enum class ServiceNames { ofSeveral, always };

/// A line for each source.
std::vector<std::string> coverageLines(std::vector<SourceCoverage> const& coverage, Texts const& texts,
                                       Calendar const& calendar, Instant now,
                                       ServiceNames names = ServiceNames::ofSeveral);

}  // namespace nimbara
