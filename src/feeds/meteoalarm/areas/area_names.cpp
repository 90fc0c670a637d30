#include "feeds/meteoalarm/areas/area_names.h"

#include "base/text/search_text.h"
#include "base/text/text.h"

#include <algorithm>
#include <vector>

namespace nimbara {

namespace {

struct Spelling {
  std::string_view word;
  std::string_view inFull;  ///< empty: left out
};

constexpr Spelling kSpellings[] = {
    {"and", ""},
    {"the", ""},
    {"ne", "north east"},
    {"nw", "north west"},
    {"se", "south east"},
    {"sw", "south west"},
    {"northeast", "north east"},
    {"northwest", "north west"},
    {"southeast", "south east"},
    {"southwest", "south west"},
};

constexpr std::string_view kLongerNames[] = {"porto santo"};

/// The words of a text as views of it, so that neighbours can be joined again.
using Words = std::vector<std::string_view>;

std::string_view run(Words const& words, std::size_t first, std::size_t end) {
  char const* const begin = words[first].data();
  return {begin, static_cast<std::size_t>(words[end - 1].data() + words[end - 1].size() - begin)};
}

}  // namespace

std::string comparableName(std::string_view name) {
  std::string const folded = searchFolded(name);
  std::string comparable;
  for (std::string_view const word : split(folded, ' ')) {
    auto const* const found = std::ranges::find(kSpellings, word, &Spelling::word);
    std::string_view const spelled = found == std::end(kSpellings) ? word : found->inFull;
    if (spelled.empty()) continue;
    if (!comparable.empty()) comparable += ' ';
    comparable += spelled;
  }
  return comparable;
}

bool isLongerName(std::string_view comparable) {
  return std::ranges::find(kLongerNames, comparable) != std::end(kLongerNames);
}

bool isNamedIn(std::string_view name, std::string_view text,
               std::function<bool(std::string_view)> const& isOthersName) {
  if (name.empty() || text.find(name) == std::string_view::npos) return false;
  Words const words = split(text, ' ');
  auto const count = static_cast<std::size_t>(std::ranges::count(name, ' ')) + 1;
  auto const isPartOfAnother = [&](std::size_t at) {
    for (std::size_t first = 0; first <= at; ++first) {
      for (std::size_t end = at + count; end <= words.size(); ++end) {
        if (end - first > count && isOthersName(run(words, first, end))) return true;
      }
    }
    return false;
  };
  for (std::size_t at = 0; at + count <= words.size(); ++at) {
    if (run(words, at, at + count) == name && !isPartOfAnother(at)) return true;
  }
  return false;
}

}  // namespace nimbara
