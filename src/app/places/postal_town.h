// A town that is named beside its postal code, as addresses have it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

struct PostalTown {
  std::string code;  ///< "10115", "1012 AB", "SW1A 1AA"
  std::string town;  ///< "Berlin", and what follows it: "Portland, Oregon"

  bool operator==(PostalTown const&) const = default;
};

/// "10115 Berlin", "London SW1A 1AA", "1012 AB Amsterdam", "Portland, OR 97201": the words with digits are
/// the code, and two letters behind four digits. Nothing where a code or a town is missing.
std::optional<PostalTown> postalTownIn(std::string_view text);

}  // namespace nimbara
