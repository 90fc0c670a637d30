// The port of the program's object in the user's session, which panels, scripts and the desktop's search talk
// to. What is said there is decided by a face, in plain values; the port only carries it.
#pragma once

#include "base/enum_names.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace nimbara {

/// What is not known has no entry.
using ServiceValue = std::variant<bool, std::int64_t, double, std::string, std::vector<std::string>>;
using ServiceRecord = std::map<std::string, ServiceValue>;
using ServiceRecords = std::vector<ServiceRecord>;

/// Warnings of a place with the state of their check: none and not checked are different answers.
struct ServiceWarnings {
  std::string state;
  ServiceRecords warnings;

  bool operator==(ServiceWarnings const&) const = default;
};

struct ServiceNowcast {
  ServiceRecord summary;
  ServiceRecords steps;

  bool operator==(ServiceNowcast const&) const = default;
};

struct ServiceProperties {
  std::string selectedPlace;  ///< its identifier; empty without one
  std::uint32_t placeCount = 0;
  std::uint32_t warningCount = 0;  ///< of all places, each warning once
  std::int64_t lastUpdated = 0;    ///< of the selected place's forecast, in seconds since 1970; 0 without one

  bool operator==(ServiceProperties const&) const = default;
};

/// A place that a search found, with the last that is known of its weather.
struct SearchHit {
  std::string id;     ///< opens the place
  std::string title;  ///< "Lisbon: 17° Partly cloudy"
  std::string description;
  std::string icon;      ///< by its name in the desktop's icon theme
  double relevance = 0;  ///< from 0 to 1

  bool operator==(SearchHit const&) const = default;
};

/// Answers callers from memory: nothing here waits for the network or the disk. Called on one thread of the
/// service's own. Places are named by identifier, name or coordinate; the empty text is the selected place,
/// and an unknown one has no answer.
class ServiceFace {
 public:
  virtual ~ServiceFace() = default;
  virtual ServiceProperties properties() = 0;
  virtual ServiceRecords places() = 0;
  virtual std::optional<ServiceRecord> current(std::string const& place) = 0;
  /// At most the next 24, from the present one on.
  virtual std::optional<ServiceRecords> hours(std::string const& place) = 0;
  virtual std::optional<ServiceWarnings> warnings(std::string const& place) = 0;
  virtual std::optional<ServiceNowcast> nowcast(std::string const& place) = 0;
  /// Whether one was begun: not where the last is too young.
  virtual bool refresh() = 0;
  /// The most relevant first.
  virtual std::vector<SearchHit> search(std::string const& text) = 0;
  /// What an earlier search found, with the weather as it is known now.
  virtual std::optional<SearchHit> found(std::string const& id) = 0;
  /// Shows a place that a search found; without one the list of places.
  virtual void open(std::string const& id, std::string const& activationToken) = 0;
};

struct WarningNews {
  enum class Kind { created, updated, ended };

  Kind kind = Kind::created;
  std::string place;      ///< its identifier
  ServiceRecord warning;  ///< of an ended one, as it was last
};
template <>
inline constexpr auto enumNames<WarningNews::Kind> =
    std::to_array<std::string_view>({"created", "updated", "ended"});
static_assert(enumNamesComplete(WarningNews::Kind::ended));

/// Stands in the session as long as it lives, and takes the name as soon as another process lets go of it.
class SessionService {
 public:
  virtual ~SessionService() = default;
  /// The face says other things now. Any thread may call; never waits.
  virtual void announce(std::vector<WarningNews> news) = 0;
};

}  // namespace nimbara
