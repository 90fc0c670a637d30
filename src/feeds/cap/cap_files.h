// A folder of documents that never change, each until a date: bounded in number and bytes, what ends first
// goes first. Several processes may share the folder. Belongs to one store, which serialises its calls; never
// throws, and a disk that fails costs no more than the documents.
#pragma once

#include "base/time/instant.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

struct CapFileLimits {
  std::size_t files = 2000;
  std::size_t bytes = std::size_t{64} << 20;
};

class CapFiles {
 public:
  /// An empty `directory` keeps nothing.
  explicit CapFiles(std::filesystem::path directory, CapFileLimits limits = {});

  /// The document of an address; nothing where none is known.
  std::optional<std::string> read(std::string_view address) const;
  bool isKnown(std::string_view address) const;
  /// For what other processes have kept.
  void look();
  void keep(std::string_view address, std::string_view document, Instant until);
  /// Removes what is kept until `now` or earlier, and what is beyond the limits.
  void sweep(Instant now);

 private:
  struct File {
    std::filesystem::path path;
    Instant until;
    std::size_t bytes = 0;
  };

  std::map<std::string, File> listed() const;

  std::filesystem::path directory_;
  CapFileLimits limits_;
  /// By the hash of the address, as last seen.
  std::map<std::string, File> files_;
};

}  // namespace nimbara
