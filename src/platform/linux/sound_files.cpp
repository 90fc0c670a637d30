#include "platform/linux/sound_files.h"

#include <algorithm>
#include <string>

namespace nimbara {

namespace {

constexpr std::string_view kLogicalEnding = ".caf";
constexpr std::string_view kFileEnding = ".wav";

bool isNameLetter(char letter) {
  return (letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9') || letter == '_';
}

}  // namespace

std::filesystem::path soundsDirectory(std::filesystem::path const& program) {
  return (program.parent_path() / "../share/nimbara/sounds").lexically_normal();
}

std::optional<std::filesystem::path> soundFile(std::string_view logicalName,
                                               std::filesystem::path const& directory) {
  if (!logicalName.ends_with(kLogicalEnding)) return std::nullopt;
  logicalName.remove_suffix(kLogicalEnding.size());
  if (logicalName.empty() || !std::ranges::all_of(logicalName, isNameLetter)) return std::nullopt;
  auto file = directory / (std::string(logicalName) + std::string(kFileEnding));
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(file, ignored)) return std::nullopt;
  return file;
}

}  // namespace nimbara
