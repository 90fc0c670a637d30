// What may stand at the end of a command line. Pure.
#pragma once

#include "app/options/outline.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct Completion {
  std::string word;
  std::string explanation;  ///< may be empty

  bool operator==(Completion const&) const = default;
};

/// What is known of values by the name that the help gives them, "PLACE", or of an option by its own,
/// "--lang". `before` is the argument that stands before the value: the key of a setting.
using KnownValues = std::function<std::vector<Completion>(std::string_view name, std::string_view before,
                                                          std::string_view typed)>;

/// `words` are those after the program's name, the last one unfinished or empty; as bash divides them, an
/// equals sign may be a word. None where nothing is known: then the shell offers files.
std::vector<Completion> completions(CommandOutline const& root, std::span<std::string const> words,
                                    KnownValues const& known);

}  // namespace nimbara
