// Recorded answers of the public services, which live outside the repository: the environment variable
// NIMBARA_SAMPLES names their folder. Without it the tests that walk it are skipped.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace nimbara::test {

/// The files of one service's folder in alphabetical order; nothing when no samples are named.
std::optional<std::vector<std::filesystem::path>> sampleFiles(std::string const& service);

std::string readFile(std::filesystem::path const& file);

}  // namespace nimbara::test
