#include "feeds/wmo/wmo_service.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/fetching/feed_exchange.h"
#include "regions/country_code.h"

#include <algorithm>

namespace nimbara {

namespace {

using namespace std::chrono_literals;

constexpr auto kAreasRest = 1h;
/// Of the store of messages, each of so many requests, for what is placed at a point.
constexpr int kMostRounds = 3;
constexpr int kMostAreaQuestions = 4;
constexpr std::size_t kMostInAQuestion = 30;  // whose addresses make a query of some 4 kB
constexpr std::size_t kMostJudgements = 20'000;
constexpr std::string_view kDocuments = "/v2/cap-alerts/";
constexpr std::string_view kGetFeature = "wfs?request=GetFeature&version=1.1.0&typeName=local_postgis:";
constexpr std::string_view kOfPlaces = "postgis_geojsons&outputFormat=json";
constexpr std::string_view kInForce = "effective_warning_view&outputFormat=json";

/// In the centre's own order: latitude first, unlike in its answers.
std::string pointQuery(Coordinate place) {
  constexpr int kDecimals = 4;
  std::string const filter = "INTERSECTS(wkb_geometry, POINT (" + fixedDecimal(place.latitude, kDecimals) +
                             " " + fixedDecimal(place.longitude, kDecimals) +
                             ")) AND row_type NEQ 'BOUNDARY'";
  return "/f/" + std::string(kGetFeature) + std::string(kOfPlaces) + "&cql_filter=" + percentEncoded(filter);
}

/// Sorted, for the centre gives no second page of what has no order.
std::string memberQuery(std::string const& member, std::size_t start) {
  std::string const page = "&maxFeatures=" + std::to_string(WmoService::kRowsOfAPage) + "&sortBy=capurl" +
                           (start == 0 ? "" : "&startIndex=" + std::to_string(start));
  return "/g/" + std::string(kGetFeature) + std::string(kInForce) + page +
         "&cql_filter=" + percentEncoded("mem='" + member + "'");
}

/// For the types of the rows of some warnings, without their outlines.
std::string areaQuery(std::span<std::string const> documents) {
  std::string list;
  for (std::string const& document : documents) list += (list.empty() ? "'" : ",'") + document + "'";
  return "/f/" + std::string(kGetFeature) + std::string(kOfPlaces) +
         "&propertyName=capurl,row_type&maxFeatures=" + std::to_string(WmoService::kRowsOfAPage) +
         "&cql_filter=" + percentEncoded("capurl IN (" + list + ")");
}

/// A path below the folder of messages and nothing that could lead elsewhere.
bool isDocumentPath(std::string_view path) {
  constexpr std::string_view kMarks = "-._~/:+@=,%";
  auto const isPlain = [&](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || kMarks.contains(c);
  };
  return path.contains('/') && !path.starts_with('/') && !path.contains("..") && !path.contains("//") &&
         std::ranges::all_of(path, isPlain);
}

bool drawsNothing(CapAlert const& alert) {
  return std::ranges::all_of(alert.infos, [](CapInfo const& info) {
    return std::ranges::all_of(
        info.areas, [](CapArea const& area) { return area.polygons.empty() && area.circles.empty(); });
  });
}

bool isAway(ServiceFailure const& failure) {
  using enum HttpError::Kind;
  constexpr HttpError::Kind kAway[] = {unresolvedHost, connectionFailed, tlsFailed, timedOut};
  return std::ranges::find(kAway, failure.transport) != std::end(kAway);
}

ServiceFailure incomplete(std::string what) {
  return ServiceFailure::of(ServiceFailure::Kind::incomplete, std::move(what));
}

/// The first reason counts.
void note(CapListing& listing, std::optional<ServiceFailure> failure) {
  if (!listing.failure) listing.failure = std::move(failure);
}

void noteMissing(CapListing& listing, std::size_t messages) {
  if (messages == 0) return;
  note(listing, incomplete("the full text of " + std::to_string(messages) +
                           (messages == 1 ? " warning" : " warnings") + " could not be fetched"));
}

std::vector<WmoRow const*> pointers(std::vector<WmoRow> const& rows) {
  std::vector<WmoRow const*> list;
  list.reserve(rows.size());
  for (WmoRow const& row : rows) list.push_back(&row);
  return list;
}

/// Those of the country's list that the centre has not placed at the point already.
std::vector<WmoRow const*> others(std::vector<WmoRow> const& rows, std::vector<WmoRow> const& hits) {
  std::set<std::string_view> known;
  for (WmoRow const& hit : hits) {
    known.insert(hit.document);
    known.insert(hit.related);
  }
  auto list = pointers(rows);
  std::erase_if(list, [&](WmoRow const* row) {
    return known.contains(row->document) || isDrawnByWmoCentre(row->document);
  });
  return list;
}

}  // namespace

WmoService::WmoService(HttpClient& http, Clock const& clock, CapStore& documents, Options options)
    : http_(http),
      clock_(clock),
      documents_(documents),
      baseUrl_(options.baseUrl),
      directory_(http, clock, std::move(options.baseUrl), options.directory) {}

CapListing WmoService::fetch(Coordinate place, std::string_view countryCode, std::stop_token const& stop) {
  if (!isValid(place)) return {{}, false, ServiceFailure::of(ServiceFailure::Kind::noSuchPlace)};
  std::lock_guard const turn(turn_);
  Instant const now = clock_.now();
  auto point = rows(pointQuery(place), stop);
  if (!point) return {{}, false, std::move(point.error())};
  std::string const country = isoCountryCode(countryCode);
  directory_.renew(stop);
  CountryList const& list = listOf(country, now, stop);
  if (judgements_.size() > kMostJudgements) judgements_.clear();
  bool const hasRows = !point->rows.empty() || !list.rows.empty();
  noteWarnings(point->rows, country);
  noteWarnings(list.rows, country);
  // The centre forgets what has ended only after a while.
  std::erase_if(point->rows, [&](WmoRow const& row) { return row.expires && *row.expires <= now; });
  CapListing listing;
  note(listing, list.failure);
  if (point->unreadable > 0) note(listing, incomplete("some rows of the response could not be read"));
  addHits(point->rows, listing, stop);
  addUnplaced(others(list.rows, point->rows), listing, stop);
  listing.isBlind = !listing.failure && !hasRows && !directory_.isMirrored(country);
  return listing;
}

Result<WmoRows, ServiceFailure> WmoService::rows(std::string const& pathAndQuery,
                                                 std::stop_token const& stop) {
  constexpr auto kLongestSilence = 8s;
  constexpr std::size_t kLargestBody = std::size_t{16} << 20;
  constexpr auto kTimeout = 20s;
  if (awayUntil_ && clock_.steadyNow() < *awayUntil_) return std::unexpected(away_);
  HttpRequest request;
  request.url = baseUrl_ + pathAndQuery;
  request.headers = {{"Accept", "application/json"}};
  request.timeout = kTimeout;
  request.maxBodyBytes = kLargestBody;
  request.longestSilence = kLongestSilence;
  auto const answer = exchange(http_, std::move(request), std::nullopt, stop);
  if (!answer) {
    if (isAway(answer.error())) {
      away_ = answer.error();
      awayUntil_ = clock_.steadyNow() + kRestWhenAway;
    }
    return std::unexpected(answer.error());
  }
  auto parsed = parseWmoRows((*answer)->body);
  if (parsed) return std::move(*parsed);
  return std::unexpected(
      ServiceFailure::of(ServiceFailure::Kind::unreadable,
                         "the response is not a valid list of warnings (" + parsed.error().text() + ")"));
}

/// Whoever has a country's warnings today is not blind for it tomorrow.
void WmoService::noteWarnings(std::vector<WmoRow> const& rows, std::string const& country) {
  bool const isAny = !country.empty() && std::ranges::any_of(rows, [&](WmoRow const& row) {
    return countryOfWmoSource(row.document) == country;
  });
  if (isAny) directory_.noteWarningOf(country);
}

WmoService::CountryList const& WmoService::listOf(std::string const& country, Instant now,
                                                  std::stop_token const& stop) {
  CountryList& list = lists_[country];
  auto const life = list.failure ? kRestAfterFailure : kListLife;
  if (list.askedAt && isYounger(*list.askedAt, life, now)) return list;
  auto const member = directory_.memberNumber(country);
  if (!member) {
    list = {{}, directory_.failure(), {}};
    if (!list.failure) list.failure = incomplete("the list of the country is not known");
  } else if (member->empty()) {
    list = {};
  } else {
    list = asked(*member, stop);
    list.askedAt = now;
  }
  return list;
}

WmoService::CountryList WmoService::asked(std::string const& member, std::stop_token const& stop) {
  CountryList list;
  std::size_t received = 0;
  for (std::size_t page = 0; page < kMostPages; ++page) {
    auto answer = rows(memberQuery(member, received), stop);
    if (!answer) {
      list.failure = std::move(answer.error());
      return list;
    }
    received += answer->received;
    std::ranges::move(answer->rows, std::back_inserter(list.rows));
    if (answer->unreadable > 0 && !list.failure)
      list.failure = incomplete("some rows of the country's list could not be read");
    bool const isCut =
        answer->total ? static_cast<double>(received) < *answer->total : answer->received >= kRowsOfAPage;
    if (!isCut || answer->received == 0) return list;
  }
  list.failure = incomplete("the country's list is too long");
  return list;
}

void WmoService::addHits(std::vector<WmoRow> const& hits, CapListing& listing, std::stop_token const& stop) {
  auto sorted = pointers(hits);
  std::ranges::stable_sort(sorted, [](auto const* a, auto const* b) { return isMoreUrgent(*a, *b); });
  std::vector<std::string> addresses;
  for (auto const path : {&WmoRow::document, &WmoRow::related}) {
    for (WmoRow const* row : sorted) {
      if (auto address = addressOf(row->*path)) addresses.push_back(*std::move(address));
    }
  }
  CapDocuments const messages = fetched(addresses, stop);
  std::size_t missing = 0;
  for (WmoRow const* row : sorted) {
    CapDocument own = messageOf(messages, row->document);
    CapDocument other = messageOf(messages, row->related);
    if (!own && addressOf(row->document)) ++missing;
    if (!row->outline.empty()) judgements_[row->document].area = Area::drawn;
    if (!own) own = std::make_shared<CapAlert const>(alertOf(*row));
    add(listing, *row, row->document, std::move(own), true);
    if (other) add(listing, *row, row->related, std::move(other), true);
  }
  noteMissing(listing, missing);
}

/// As many messages as may be, in several rounds while they bring any.
CapDocuments WmoService::fetched(std::vector<std::string> const& addresses, std::stop_token const& stop) {
  CapDocuments messages;
  for (int round = 0; round < kMostRounds && !addresses.empty(); ++round) {
    std::size_t const before = messages.size();
    messages.merge(documents_.documents(addresses, stop));
    if (messages.size() == before || messages.size() == addresses.size()) break;
  }
  return messages;
}

/// The warnings of the country that have no area of their own anywhere. The store bounds how many messages
/// are fetched for that in one call; the rest follows in the next ones.
void WmoService::addUnplaced(std::vector<WmoRow const*> rows, CapListing& listing,
                             std::stop_token const& stop) {
  sortForLook(rows);
  if (rows.empty()) return;
  std::vector<std::string> addresses;
  addresses.reserve(rows.size());
  for (WmoRow const* row : rows) addresses.push_back(*addressOf(row->document));
  CapDocuments messages = documents_.documents(addresses, stop);
  askForAreas(judge(rows, messages), stop);
  std::erase_if(rows, [this](WmoRow const* row) {
    Area const area = areaOf(row->document);
    return area == Area::unknown || area == Area::drawn;
  });
  std::vector<std::string> related;
  for (WmoRow const* row : rows) {
    if (auto address = addressOf(row->related)) related.push_back(*std::move(address));
  }
  if (!related.empty()) messages.merge(documents_.documents(related, stop));
  std::size_t missing = 0;
  for (WmoRow const* row : rows) {
    CapDocument own = messageOf(messages, row->document);
    CapDocument other = messageOf(messages, row->related);
    if (!own) ++missing;
    if (!own) own = std::make_shared<CapAlert const>(alertOf(*row));
    add(listing, *row, row->document, std::move(own), false);
    if (other && drawsNothing(*other)) add(listing, *row, row->related, std::move(other), false);
  }
  noteMissing(listing, missing);
}

/// Those that draw nothing, then those that nobody has looked at, the most urgent first; what could not be
/// fetched waits behind what was never tried. The others are dropped.
void WmoService::sortForLook(std::vector<WmoRow const*>& rows) const {
  std::erase_if(rows, [this](WmoRow const* row) {
    return areaOf(row->document) == Area::drawn || !addressOf(row->document);
  });
  auto const turn = [this](WmoRow const* row) {
    auto const found = judgements_.find(row->document);
    return found == judgements_.end() ? 0 : found->second.area == Area::unknown ? found->second.failures : -1;
  };
  std::ranges::stable_sort(rows, [&](WmoRow const* a, WmoRow const* b) {
    int const turnOfA = turn(a);
    int const turnOfB = turn(b);
    return turnOfA != turnOfB ? turnOfA < turnOfB : isMoreUrgent(*a, *b);
  });
}

/// Notes what the messages draw. Returns those of which only the centre knows.
std::vector<std::string> WmoService::judge(std::vector<WmoRow const*> const& rows,
                                           CapDocuments const& messages) {
  std::vector<std::string> unclear;
  for (WmoRow const* row : rows) {
    Judgement& judgement = judgements_[row->document];
    if (judgement.area == Area::unknown) {
      if (auto const message = messageOf(messages, row->document)) {
        judgement.area = drawsNothing(*message) ? Area::unclear : Area::drawn;
      } else if (documents_.rests(*addressOf(row->document))) {
        ++judgement.failures;
      }
    }
    if (judgement.area == Area::unclear) unclear.push_back(row->document);
  }
  return unclear;
}

/// A message that names areas only by codes may have been drawn by the centre; then it is elsewhere. Where
/// the centre does not tell, such warnings are listed and asked about again later.
void WmoService::askForAreas(std::span<std::string const> documents, std::stop_token const& stop) {
  if (areasRestUntil_ && clock_.steadyNow() < *areasRestUntil_) return;
  for (int i = 0; i < kMostAreaQuestions && !documents.empty(); ++i) {
    auto const some = documents.first(std::min(documents.size(), kMostInAQuestion));
    documents = documents.subspan(some.size());
    auto const answer = rows(areaQuery(some), stop);
    if (!answer) {
      if (!stop.stop_requested()) areasRestUntil_ = clock_.steadyNow() + kAreasRest;
      return;
    }
    for (std::string const& document : some) judgements_[document].area = Area::none;
    for (WmoRow const& row : answer->rows) {
      bool const isArea = row.type == "POLYGON" || row.type == "MULTIPOLYGON" || row.type == "CIRCLE";
      auto const asked = judgements_.find(row.document);
      if (isArea && asked != judgements_.end()) asked->second.area = Area::drawn;
    }
  }
}

WmoService::Area WmoService::areaOf(std::string const& document) const {
  auto const found = judgements_.find(document);
  return found == judgements_.end() ? Area::unknown : found->second.area;
}

std::optional<std::string> WmoService::addressOf(std::string_view document) const {
  if (!isDocumentPath(document)) return std::nullopt;
  return baseUrl_ + std::string(kDocuments) + std::string(document);
}

CapDocument WmoService::messageOf(CapDocuments const& messages, std::string const& document) const {
  auto const address = addressOf(document);
  auto const found = address ? messages.find(*address) : messages.end();
  return found == messages.end() ? nullptr : found->second;
}

/// Once each: two rows may name each other's messages.
void WmoService::add(CapListing& listing, WmoRow const& row, std::string const& document, CapDocument message,
                     bool isHit) const {
  CapMessage one;
  one.link = addressOf(document).value_or("");
  if (!one.link.empty() &&
      std::ranges::find(listing.messages, one.link, &CapMessage::link) != listing.messages.end())
    return;
  one.country = countryOfWmoSource(document);
  one.isHit = isHit;
  if (isHit && drawsNothing(*message)) one.outline = row.outline;
  one.alert = std::move(message);
  listing.messages.push_back(std::move(one));
}

}  // namespace nimbara
