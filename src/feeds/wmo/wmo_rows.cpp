#include "feeds/wmo/wmo_rows.h"

#include "base/text/text.h"
#include "feeds/cap/cap_text.h"
#include "feeds/fetching/geo_json.h"
#include "feeds/fetching/lenient_json.h"
#include "feeds/wmo/wmo_sources.h"

#include <array>
#include <tuple>
#include <unordered_map>

namespace nimbara {

namespace {

/// The codes of the centre, by their numbers, as far as they were seen beside the issuer's own words.
constexpr std::array<std::string_view, 5> kSeverities{"Unknown", "Minor", "Moderate", "Severe", "Extreme"};
constexpr std::array<std::string_view, 5> kUrgencies{"Unknown", "Unknown", "Future", "Expected", "Immediate"};
constexpr std::array<std::string_view, 5> kCertainties{"Unknown", "Unknown", "Possible", "Likely",
                                                       "Observed"};

using Text = Lenient<std::string>;

struct WireProperties {
  Text capurl, rlink, url, identifier, event, description, areadesc, areaDesc, rowType;
  Text sent, effective, onset, expires;
  LenientNumber s, u, c;
};

struct WireFeature {
  WireProperties properties;
  Lenient<GeoAreas> geometry;
};

struct WireCollection {
  std::vector<Lenient<WireFeature>> features;
  LenientNumber numberMatched;
  LenientNumber totalFeatures;
};

std::string word(Text const& text) {
  return std::string(trimmed(text.value.value_or("")));
}

/// Without a zone it is of UTC.
std::optional<Instant> moment(Text const& text) {
  std::string const written = word(text);
  if (auto const instant = capDate(written)) return instant;
  auto const local = parseLocalTime(written);
  return local ? std::optional(Instant(local->time_since_epoch())) : std::nullopt;
}

std::optional<std::size_t> codeOf(LenientNumber const& number) {
  if (!number.value) return std::nullopt;
  for (std::size_t code = 1; code < kSeverities.size(); ++code) {
    if (*number.value == static_cast<double>(code)) return code;
  }
  return 0;
}

std::string codeWord(LenientNumber const& number, std::array<std::string_view, 5> const& words) {
  auto const code = codeOf(number);
  return code ? std::string(words[*code]) : std::string();
}

WmoRow rowOf(WireFeature& wire) {
  WireProperties const& own = wire.properties;
  WmoRow row;
  row.document = word(own.capurl);
  row.related = word(own.rlink);
  if (row.document.empty()) std::swap(row.document, row.related);
  if (row.related == row.document) row.related.clear();
  row.identifier = word(own.identifier);
  if (row.document.empty()) row.document = word(own.url);
  if (row.document.empty()) row.document = row.identifier;
  row.event = word(own.event);
  row.description = own.description.value.value_or("");
  row.areaDesc = word(own.areadesc.value ? own.areadesc : own.areaDesc);
  row.type = word(own.rowType);
  row.severity = codeWord(own.s, kSeverities);
  row.urgency = codeWord(own.u, kUrgencies);
  row.certainty = codeWord(own.c, kCertainties);
  row.rank = static_cast<int>(codeOf(own.s).value_or(0));
  row.sent = moment(own.sent);
  row.effective = moment(own.effective);
  row.onset = moment(own.onset);
  row.expires = moment(own.expires);
  if (wire.geometry.value) row.outline = std::move(wire.geometry.value->outlines);
  return row;
}

std::size_t pointsOf(std::vector<WarningPolygon> const& outline) {
  std::size_t points = 0;
  for (WarningPolygon const& polygon : outline) points += polygon.size();
  return points;
}

/// Gathers the rows of an answer.
class Gatherer {
 public:
  void take(WmoRow row) {
    points_ += pointsOf(row.outline);
    if (points_ > kMostWmoPoints) row.outline.clear();
    auto const [known, isNew] = places_.try_emplace(row.document, rows_.size());
    if (isNew) {
      rows_.push_back(std::move(row));
    } else {
      auto& outline = rows_[known->second].outline;
      std::ranges::move(row.outline, std::back_inserter(outline));
    }
  }
  std::vector<WmoRow> rows() { return std::move(rows_); }

 private:
  std::vector<WmoRow> rows_;
  std::unordered_map<std::string, std::size_t> places_;
  std::size_t points_ = 0;
};

}  // namespace

template <>
inline constexpr auto jsonFields<WireProperties> = FieldList{
    fieldOr("capurl", &WireProperties::capurl),
    fieldOr("rlink", &WireProperties::rlink),
    fieldOr("url", &WireProperties::url),
    fieldOr("identifier", &WireProperties::identifier),
    fieldOr("sent", &WireProperties::sent),
    fieldOr("description", &WireProperties::description),
    fieldOr("event", &WireProperties::event),
    fieldOr("s", &WireProperties::s),
    fieldOr("u", &WireProperties::u),
    fieldOr("c", &WireProperties::c),
    fieldOr("areadesc", &WireProperties::areadesc),
    fieldOr("areaDesc", &WireProperties::areaDesc),
    fieldOr("effective", &WireProperties::effective),
    fieldOr("onset", &WireProperties::onset),
    fieldOr("expires", &WireProperties::expires),
    fieldOr("row_type", &WireProperties::rowType),
};

template <>
inline constexpr auto jsonFields<WireFeature> =
    FieldList{fieldOr("geometry", &WireFeature::geometry), field("properties", &WireFeature::properties)};

template <>
inline constexpr auto jsonFields<WireCollection> = FieldList{
    field("features", &WireCollection::features), fieldOr("totalFeatures", &WireCollection::totalFeatures),
    fieldOr("numberMatched", &WireCollection::numberMatched)};

Result<WmoRows, DecodeError> parseWmoRows(std::string_view body) {
  auto collection = decodeJson<WireCollection>(body);
  if (!collection) return std::unexpected(std::move(collection.error()));
  WmoRows answer;
  Gatherer gatherer;
  answer.received = collection->features.size();
  answer.total =
      collection->numberMatched.value ? collection->numberMatched.value : collection->totalFeatures.value;
  for (Lenient<WireFeature>& feature : collection->features) {
    WmoRow row = feature.value ? rowOf(*feature.value) : WmoRow();
    if (row.document.empty()) {
      ++answer.unreadable;
    } else if (isLeftOutWmoSource(row.document)) {
      ++answer.leftOut;
    } else {
      gatherer.take(std::move(row));
    }
  }
  answer.rows = gatherer.rows();
  return answer;
}

CapAlert alertOf(WmoRow const& row) {
  CapInfo info;
  info.event = row.event;
  info.description = row.description;
  info.severity = row.severity;
  info.urgency = row.urgency;
  info.certainty = row.certainty;
  info.effective = row.effective;
  info.onset = row.onset;
  info.expires = row.expires;
  info.areas.push_back({row.areaDesc, {}, {}, {}});
  CapAlert alert;
  alert.identifier = row.identifier.empty() ? row.document : row.identifier;
  alert.sent = row.sent;
  // The centre lists nothing else: neither tests nor what was called off.
  alert.status = "Actual";
  alert.msgType = "Alert";
  alert.infos.push_back(std::move(info));
  return alert;
}

bool isMoreUrgent(WmoRow const& a, WmoRow const& b) {
  return std::tie(b.rank, b.sent) < std::tie(a.rank, a.sent);
}

}  // namespace nimbara
