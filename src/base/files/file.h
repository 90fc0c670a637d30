// Whole files: bounded reading, and writing that leaves either the old content or the new, whatever happens
// in between. Errors are sentences that name the file. For small files that belong to the program alone.
#pragma once

#include "base/result.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace nimbara {

/// The content of a regular file of at most `maxBytes`.
Result<std::string, std::string> readFile(std::filesystem::path const& file, std::size_t maxBytes);

/// Writes a new file beside `file`, brings it to the disk and gives it the name. Folders that are missing are
/// made for the user only (0700), the file is readable by the user only (0600). After a failure `file` is as
/// it was and nothing is left next to it. Several writers may write the same path at once; one of them wins.
Result<void, std::string> writeFileAtomically(std::filesystem::path const& file, std::string_view bytes);

}  // namespace nimbara
