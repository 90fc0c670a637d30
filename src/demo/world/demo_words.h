// What the issuers of the demo's world say in their languages. A table; nothing of it is a real warning's
// text.
#pragma once

#include "demo/world/demo_world.h"

#include <array>
#include <string>
#include <string_view>

namespace nimbara {

struct DemoWords {
  std::string_view tag;                                        ///< "th", as the issuers' table has it
  std::array<std::string_view, std::size(kDemoKinds)> events;  ///< in the order of `kDemoKinds`
  std::string_view sentence;                                   ///< "An invented warning for {}."
  std::string_view instruction;

  std::string sentenceFor(std::string_view area) const;
};

/// English for a language without words.
DemoWords const& demoWords(std::string_view tag);

}  // namespace nimbara
