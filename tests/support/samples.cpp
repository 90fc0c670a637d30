#include "support/samples.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace nimbara::test {

std::optional<std::vector<std::filesystem::path>> sampleFiles(std::string const& service) {
  char const* const folder = std::getenv("NIMBARA_SAMPLES");
  if (folder == nullptr || *folder == '\0') return std::nullopt;
  std::vector<std::filesystem::path> files;
  for (auto const& entry : std::filesystem::directory_iterator(std::filesystem::path(folder) / service)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::ranges::sort(files);
  return files;
}

std::string readFile(std::filesystem::path const& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream content;
  content << stream.rdbuf();
  return content.str();
}

}  // namespace nimbara::test
