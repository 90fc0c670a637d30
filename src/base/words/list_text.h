// Lists in a language of the texts.
#pragma once

#include "base/words/texts.h"

#include <string>
#include <string_view>

namespace nimbara {

inline void appendJoined(std::string& text, std::string_view joint, std::string_view part) {
  if (part.empty()) return;
  if (!text.empty()) text += joint;
  text += part;
}

/// Puts the language's comma between things of one kind; empty ones are left out.
inline void appendItem(std::string& list, std::string_view item, Texts const& texts) {
  appendJoined(list, texts.text("list.comma"), item);
}

/// The same between the parts of a sentence, where Chinese has another comma.
inline void appendClause(std::string& sentence, std::string_view clause, Texts const& texts) {
  appendJoined(sentence, texts.text("list.clause"), clause);
}

}  // namespace nimbara
