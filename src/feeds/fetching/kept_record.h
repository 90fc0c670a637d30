// Records in files of the cache, by which feeds outlive a process. For sources that instantiate `decodeJson`.
#pragma once

#include "base/files/file.h"
#include "base/json/json.h"

#include <filesystem>
#include <optional>

namespace nimbara {

/// A file that is missing, damaged or longer than `largest` bytes is none.
template <class T>
std::optional<T> keptRecord(std::filesystem::path const& file, std::size_t largest) {
  auto const content = readFile(file, largest);
  if (!content) return std::nullopt;
  auto record = decodeJson<T>(*content);
  return record ? std::optional(std::move(*record)) : std::nullopt;
}

}  // namespace nimbara
