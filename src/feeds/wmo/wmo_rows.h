// Rows of the warnings that the WMO Severe Weather Information Centre lists, and their parser. Pure; any
// bytes may be given.
#pragma once

#include "base/json/json.h"
#include "base/result.h"
#include "feeds/cap/cap_alert.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct WmoRow {
  /// Path of the message as it was issued, below the folder of all messages. It never changes its content and
  /// is what the row is known by; for a row without a message some other text that only it has.
  std::string document;
  std::string related;  ///< path of the same warning in another language; often empty
  std::string identifier;
  std::string event;
  std::string description;
  std::string areaDesc;
  std::string type;      ///< "POLYGON", "POINT" for what has no area; empty when not told
  std::string severity;  ///< CAP's words; "Unknown" for a code that nobody has explained, empty for none
  std::string urgency;
  std::string certainty;
  int rank = 0;  ///< of the severity, from 0 for unknown to 4 for extreme
  std::optional<Instant> sent;
  std::optional<Instant> effective;
  std::optional<Instant> onset;
  std::optional<Instant> expires;
  std::vector<WarningPolygon> outline;  ///< that the centre has drawn; none if it cannot be read

  bool operator==(WmoRow const&) const = default;
};

struct WmoRows {
  std::vector<WmoRow> rows;     ///< in the answer's order, each warning once with all of its outlines
  std::size_t received = 0;     ///< features of the answer
  std::size_t unreadable = 0;   ///< of them, those that are no rows
  std::size_t leftOut = 0;      ///< of them, those of sources that are of no use
  std::optional<double> total;  ///< of which these are a part, where the service says it
};

/// Of all outlines of an answer together; rows beyond it have none.
inline constexpr std::size_t kMostWmoPoints = 500'000;

/// The error is that of a document that is not an object with a list of features: the centre sends its own
/// errors with status 200.
Result<WmoRows, DecodeError> parseWmoRows(std::string_view body);

/// What the row tells, as a message: for one whose document cannot be fetched.
CapAlert alertOf(WmoRow const& row);

/// Severest first, of equal ones the newest.
bool isMoreUrgent(WmoRow const& a, WmoRow const& b);

}  // namespace nimbara
