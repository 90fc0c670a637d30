// What texts made from figures depend on: the user's units, words and calendar. A value.
#pragma once

#include "base/time/calendar.h"
#include "base/units.h"
#include "base/words/texts.h"

#include <memory>
#include <string>

namespace nimbara {

struct Wording {
  Units units;
  std::shared_ptr<Texts const> texts = std::make_shared<Texts>(Texts::load("en"));
  Calendar fallback = Calendar::utc();  ///< of places whose zone nobody knows
  std::string language;                 ///< as the user has it, also where no texts are in it: "de_DE.UTF-8"
};

}  // namespace nimbara
