// Whole numbers as a reader's language groups their digits. Pure.
#pragma once

#include "base/words/texts.h"

#include <string>

namespace nimbara {

/// "1,234" for "1234" in English, "1.234" in German; languages that group by a blank do so from five digits
/// on. What is not all digits is left alone, as is the number of a language that is not known.
std::string groupedText(std::string number, Texts const& texts);

}  // namespace nimbara
