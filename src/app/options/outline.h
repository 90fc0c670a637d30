// A declared command line as values, for what is made of it: manual pages and completions.
#pragma once

#include <string>
#include <vector>

namespace nimbara {

struct OptionOutline {
  std::string name;       ///< "--json"; of a positional argument "PLACE"
  std::string shortName;  ///< "-v"; mostly empty
  std::string value;      ///< what the help calls its value, as in "KM"; empty for a flag
  std::string explanation;
  std::vector<std::string> words;  ///< the only ones that it takes; empty: any
  bool isPositional = false;
};

struct CommandOutline {
  std::string name;
  std::string explanation;
  std::vector<OptionOutline> options;  ///< as they were declared, those of groups among them
  std::vector<CommandOutline> commands;
};

}  // namespace nimbara
