// A country's MeteoAlarm feed (Atom whose entries carry fields of the Common Alerting Protocol) as raw
// entries in the order of the document. Element names count without their prefix; what stands outside of
// entries or names their author is left out. Judges nothing: tests, green and ended entries are all there.
#pragma once

#include "base/result.h"
#include "base/time/instant.h"
#include "feeds/cap/warning_shape.h"
#include "regions/region_code.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct RawEntry {
  std::string event;     ///< in the national service's own words
  std::string severity;  ///< "Moderate"
  std::string title;     ///< "Yellow Wind Warning issued for Poland - Eastern coastal zone"
  std::string areaDesc;
  std::vector<WarningPolygon> polygons;
  std::vector<WarningCircle> circles;
  std::vector<std::string> nuts3Codes;
  std::optional<Instant> sent;
  std::optional<Instant> onset;
  std::optional<Instant> expires;
  std::vector<RegionCode> otherCodes;  ///< of all registries but NUTS3, each once
  std::string identifier;
  std::string status;       ///< "Actual"; empty when the entry does not say
  std::string messageType;  ///< "Alert", "Update", "Cancel"; empty likewise
  std::string link;         ///< of the original message
  /// Which of the message's blocks, and of that block's areas, the entry was made of, where it says so.
  std::optional<std::size_t> infoIndex;
  std::optional<std::size_t> areaIndex;

  bool operator==(RawEntry const&) const = default;
};

class MeteoAlarmAtomParser {
 public:
  /// Reads a whole body. The error says why it is no feed that is well formed to its end; `entries()` then
  /// holds those that were whole before that point. Entity declarations and nesting beyond 64 levels are
  /// errors. A polygon, circle or date that cannot be read is left out of its entry.
  Result<void, std::string> parse(std::string_view body);

  std::vector<RawEntry> const& entries() const { return entries_; }
  std::vector<RawEntry> takeEntries() { return std::move(entries_); }

 private:
  std::vector<RawEntry> entries_;
};

}  // namespace nimbara
