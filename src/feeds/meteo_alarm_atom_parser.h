// A country's MeteoAlarm feed (Atom whose entries carry fields of the Common Alerting Protocol) as raw
// entries in the order of the document. Element names count without their prefix; what stands outside of
// entries or names their author is left out. Judges nothing: tests, green and ended entries are all there.
#pragma once

#include "base/geodesy.h"
#include "base/instant.h"
#include "base/result.h"
#include "feeds/region_code.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct WarningCircle {
  Coordinate center;
  double radiusKm = 0;

  bool operator==(WarningCircle const&) const = default;
};

/// The corners of an outline, the last of them perhaps the first again.
using WarningPolygon = std::vector<Coordinate>;

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

/// Blank-separated pairs "latitude,longitude"; nothing when a pair cannot be read or there are fewer than
/// three.
std::optional<WarningPolygon> parseWarningPolygon(std::string_view text);

/// "latitude,longitude radius"; nothing for other texts and for a negative radius.
std::optional<WarningCircle> parseWarningCircle(std::string_view text);

}  // namespace nimbara
