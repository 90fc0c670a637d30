// The files of the packing: those that are read, and the gazetteer's own while it is being made, as sections
// that grow and a pool of texts.
#pragma once

#include "gazetteer/table_layout.h"

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace nimbara::gazetteer {

/// The bytes of a file. Throws std::runtime_error when it cannot be read.
std::string contentOf(std::filesystem::path const& file);

class TableFile {
 public:
  /// Appends one record; its number within the section.
  template <class Record>
  std::uint32_t append(Section section, Record const& record) {
    static_assert(std::is_trivially_copyable_v<Record> && std::has_unique_object_representations_v<Record>);
    constexpr auto kSize = static_cast<std::uint32_t>(sizeof record);
    return appendBytes(section, {reinterpret_cast<char const*>(&record), kSize}) / kSize;
  }

  /// Appends bytes; their offset within the section.
  std::uint32_t appendBytes(Section section, std::string_view bytes);

  /// The offset of a display text in the pool, where each text stands once.
  std::uint32_t text(std::string_view text);

  std::string_view bytes(Section section) const { return sections_[static_cast<std::size_t>(section)]; }

  void write(std::filesystem::path const& file) const;

 private:
  std::array<std::string, kSections> sections_;
  std::map<std::string, std::uint32_t, std::less<>> texts_;
};

}  // namespace nimbara::gazetteer
