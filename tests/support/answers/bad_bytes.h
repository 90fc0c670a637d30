// Damaged forms of a whole document, for parsers that must take any bytes.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace nimbara::test {

/// The document cut short at every `step`th byte, with a byte changed there, and a few that are none at all.
inline std::vector<std::string> damagedForms(std::string const& whole, std::size_t step = 97) {
  std::vector<std::string> forms{"",
                                 "null",
                                 "[]",
                                 "{",
                                 "\xff\xfe",
                                 "<html>log in</html>",
                                 std::string(5000, '['),
                                 std::string("{\"a\":\0}", 7)};
  for (std::size_t at = 0; at < whole.size(); at += step) {
    forms.push_back(whole.substr(0, at));
    forms.push_back(whole);
    forms.back()[at] = static_cast<char>(forms.back()[at] ^ 0x15);
  }
  return forms;
}

}  // namespace nimbara::test
