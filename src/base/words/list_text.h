// Lists in a language of the texts.
#pragma once

#include "base/words/texts.h"

#include <string>
#include <string_view>

namespace nimbara {

/// Puts the language's comma between the items; empty ones are left out.
inline void appendItem(std::string& list, std::string_view item, Texts const& texts) {
  if (item.empty()) return;
  if (!list.empty()) list += texts.text("list.comma");
  list += item;
}

}  // namespace nimbara
