// The English texts as a long-lived object holds them.
#pragma once

#include "support/rules.h"

#include <memory>

namespace nimbara::test {

inline std::shared_ptr<Texts const> sharedEnglishTexts() {
  return {std::shared_ptr<void>(), &englishTexts()};
}

}  // namespace nimbara::test
