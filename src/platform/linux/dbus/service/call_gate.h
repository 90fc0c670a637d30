// What every call of another program passes before it is answered: limits of length and number, and the
// refusals in the bus's own terms.
#pragma once

#include "platform/linux/call_budget.h"

#include <sdbus-c++/sdbus-c++.h>
#include <string>
#include <vector>

namespace nimbara {

class CallGate {
 public:
  /// Bytes of a place or a search, and how many words or identifiers are taken at once.
  static constexpr std::size_t kLongestText = 256;
  static constexpr std::size_t kMostTexts = 32;
  /// A token of the desktop's may be longer.
  static constexpr std::size_t kLongestToken = 4096;

  /// Takes one of the caller's calls; throws the error that the caller gets.
  void admit(sdbus::IObject const& object);
  void admit(sdbus::IObject const& object, std::string const& text);
  void admit(sdbus::IObject const& object, std::vector<std::string> const& texts);

 private:
  CallBudget budget_;
};

/// Plain text for other programs, valid and of a bounded length.
std::string textForBus(std::string const& text);
/// A token that is too long is none.
std::string tokenForUse(std::string const& token);

}  // namespace nimbara
