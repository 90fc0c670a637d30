// The manual pages, made of the commands' own help. Pure.
#pragma once

#include "app/options/outline.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct ManualPage {
  std::string file;  ///< "nimbara-forecast.1"
  std::string text;  ///< in the macros of man(7)
};

/// One for the program and one for each of its commands, which has those below it as sections.
std::vector<ManualPage> manualPages(CommandOutline const& program, std::string_view version);

}  // namespace nimbara
