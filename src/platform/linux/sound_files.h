// Where the sounds of the notification rules are. The rules name them as "rain_alert.caf" on every platform;
// here they are WAV files beside the program (tools/make_sounds makes them).
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace nimbara {

/// The folder that belongs to the running program, in the build folder as when installed.
std::filesystem::path soundsDirectory(std::filesystem::path const& program);

/// The file of a rule's sound; nothing when there is none or the name leads out of the folder.
std::optional<std::filesystem::path> soundFile(std::string_view logicalName,
                                               std::filesystem::path const& directory);

}  // namespace nimbara
