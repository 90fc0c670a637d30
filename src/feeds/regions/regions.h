// Coordinate -> country, region names and region codes, all offline: from the gazetteer and the outlines of
// warning regions, which are part of the program; a newer edition in the folder of data takes their place as
// soon as it is there. Owned by whoever asks for warnings. Any thread may ask.
#pragma once

#include "base/time/instant.h"
#include "regions/region_map.h"

#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace nimbara {

/// The outlines that are part of the program.
std::shared_ptr<RegionMap const> embeddedRegions();

class Regions {
 public:
  /// `file` is where a newer edition may lie; it is looked for at each question.
  explicit Regions(std::filesystem::path file) : file_(std::move(file)) {}

  PlaceRegions at(Coordinate place) const;

  /// The outlines in use now.
  std::shared_ptr<RegionMap const> outlines() const;
  /// Whether these are from the file, not the program's own.
  bool isUpdated() const;

  /// Why the file of outlines cannot be used; nothing when it can be, is older than the program's own or was
  /// never there.
  std::optional<std::string> problem() const;

 private:
  struct Stamp {
    std::filesystem::file_time_type changedAt;
    std::uintmax_t size = 0;

    bool operator==(Stamp const&) const = default;
  };

  struct State {
    std::optional<Stamp> stamp;  ///< of the file as it was read
    std::shared_ptr<RegionMap const> updated;
    std::optional<std::string> problem;
  };

  std::optional<Stamp> stampNow() const;
  State current() const;

  std::filesystem::path file_;
  mutable std::mutex mutex_;
  mutable State state_;
};

/// What the gazetteer and these outlines say of a place together.
PlaceRegions placeRegionsOf(Coordinate place, std::shared_ptr<RegionMap const> const& outlines);

}  // namespace nimbara
