// Folders that belong to the user alone.
#pragma once

#include <filesystem>

namespace nimbara {

/// Makes the folders of the path that are missing, for the user only (0700 whatever the process's mask). 0,
/// or the error number.
int makePrivateFolders(std::filesystem::path const& folder);

}  // namespace nimbara
