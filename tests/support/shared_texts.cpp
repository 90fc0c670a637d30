#include "support/shared_texts.h"

namespace nimbara::test {

std::shared_ptr<Texts const> sharedEnglishTexts() {
  return {std::shared_ptr<void>(), &englishTexts()};
}

}  // namespace nimbara::test
