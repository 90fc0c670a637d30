// The user's home, below which settings and forecasts are kept where nothing else is named.
#pragma once

#include <filesystem>
#include <string_view>

namespace nimbara {

/// HOME, else the account's own folder; empty where nobody knows one. Never the current folder.
std::filesystem::path homeDirectory();

inline constexpr std::string_view kNoHome = "no home directory for the settings; set HOME or XDG_DATA_HOME";

}  // namespace nimbara
