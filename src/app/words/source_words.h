// What is said of the source of a place's official warnings, in the words of a language: who serves, what
// that cannot give, who is asked after it. Pure; the same for every face.
#pragma once

#include "base/words/texts.h"
#include "feeds/alerts/coverage.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct SourceWords {
  std::string_view source;         ///< who answered last, else who is asked first; empty without a route
  std::string service;             ///< its proper name
  std::vector<std::string> lacks;  ///< what it cannot give
  /// Who is asked where it is unavailable, or what is shown then. Empty where everybody has failed, which is
  /// said elsewhere, and where nobody serves.
  std::string next;
};

/// `route` has the sources in the order in which they are asked; `coverage` is null before the first check
/// and refers to nothing afterwards.
SourceWords sourceWords(std::vector<std::string_view> const& route, SourceCoverage const* coverage,
                        Texts const& texts);

}  // namespace nimbara
