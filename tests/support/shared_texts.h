// The English texts as a long-lived object holds them.
#pragma once

#include "support/rules.h"

#include <memory>

namespace nimbara::test {

std::shared_ptr<Texts const> sharedEnglishTexts();

}  // namespace nimbara::test
