// A file's bytes as the memory that they are read from: pages come in when they are looked at and go when the
// system needs them. For files that are replaced as a whole and never changed in place.
#pragma once

#include "base/result.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

namespace nimbara {

class MappedFile {
 public:
  /// A regular file of at most `maxBytes`. The error is a sentence that names the file.
  static Result<MappedFile, std::string> open(std::filesystem::path const& file, std::size_t maxBytes);

  MappedFile(MappedFile&& other) noexcept : bytes_(std::exchange(other.bytes_, {})) {}
  MappedFile& operator=(MappedFile&& other) noexcept {
    std::swap(bytes_, other.bytes_);
    return *this;
  }
  MappedFile(MappedFile const&) = delete;
  MappedFile& operator=(MappedFile const&) = delete;
  ~MappedFile();

  /// Of no file, without bytes.
  static MappedFile none() { return MappedFile({}); }

  std::string_view bytes() const { return bytes_; }

 private:
  explicit MappedFile(std::string_view bytes) : bytes_(bytes) {}

  std::string_view bytes_;
};

}  // namespace nimbara
