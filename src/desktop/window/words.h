// The window's own words, as properties of the models that the pages read: a property's name and the key of
// its text, a table for each page. Written again when the language changes.
#pragma once

#include "base/words/texts.h"
#include "desktop/window/models/view_models.h"

#include <span>
#include <string_view>

namespace nimbara {

struct WordRow {
  std::string_view name;
  std::string_view key;
};

inline void showWords(RecordModel& words, std::span<WordRow const> rows, Texts const& texts) {
  QVariantHash added;
  for (WordRow const& row : rows) words.put(viewName(row.name), viewName(texts.text(row.key)), added);
  if (!added.isEmpty()) words.insert(added);
}

}  // namespace nimbara
