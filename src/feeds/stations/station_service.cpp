#include "feeds/stations/station_service.h"

#include "base/files/file.h"
#include "base/files/file_lock.h"
#include "base/files/private_folders.h"
#include "base/json/json_codec.h"
#include "base/text/text.h"
#include "feeds/fetching/kept_record.h"
#include "feeds/stations/netatmo_reader.h"

#include <algorithm>

namespace nimbara {

namespace {

using Kind = StationProblem::Kind;

constexpr std::chrono::seconds kLocalTimeout{6};
constexpr std::size_t kLargestDocument = std::size_t{256} << 10;
constexpr std::size_t kLargestKept = std::size_t{4} << 20;

StationProblem unreadable(std::string_view what, DecodeError const& error) {
  return StationProblem::failed(
      ServiceFailure::of(ServiceFailure::Kind::unreadable,
                         "the response is not a valid " + std::string(what) + " (" + error.text() + ")"));
}

StationProblem problemOf(NetatmoRefusal const& refusal, int status) {
  if (refusal.kind == NetatmoRefusal::Kind::tooMany) return StationProblem::of(Kind::tooMany);
  if (refusal.kind == NetatmoRefusal::Kind::tokenExpired) return StationProblem::of(Kind::expired);
  // A consent that does not cover stations is mended by signing in, nothing else.
  if (refusal.kind == NetatmoRefusal::Kind::scope) return StationProblem::of(Kind::signInAgain);
  ServiceFailure failure = ServiceFailure::answered(status);
  failure.detail = refusal.message;
  return StationProblem::failed(std::move(failure));
}

bool isOutdoors(StationReading const& station) {
  return std::ranges::any_of(station.modules, [](StationModule const& module) {
    return module.kind != StationModuleKind::base && module.kind != StationModuleKind::indoor;
  });
}

bool isDue(StationsKept const& kept, StationNeed need, Instant now) {
  if (now < kept.askedAt) return true;  // the clock was set back
  auto const rest = kept.link.starts_with(enumName(StationLinkKind::address)) ? std::chrono::minutes(5)
                                                                              : StationService::kHiddenRest;
  return now >= (need == StationNeed::hidden ? std::max(kept.nextAsk, kept.askedAt + rest) : kept.nextAsk);
}

}  // namespace

template Result<StationsKept, DecodeError> decodeJson<StationsKept>(std::string_view document);

StationReading const* StationsReading::station() const {
  auto const wanted = std::ranges::find(stations, chosen, &StationReading::id);
  if (wanted != stations.end()) return &*wanted;
  if (!chosen.empty()) return nullptr;
  auto const outdoors = std::ranges::find_if(stations, isOutdoors);
  return outdoors == stations.end() ? nullptr : &*outdoors;
}

StationService::StationService(HttpClient& http, Clock const& clock, Options options)
    : http_(http),
      clock_(clock),
      options_(std::move(options)),
      file_(options_.linkFile),
      secrets_(file_, options_.secrets),
      history_(options_.historyFile),
      tokens_(http, clock, options_.netatmoBase, file_, secrets_) {}

std::string StationService::authorizeUrl(std::string const& clientId, std::string const& redirect,
                                         std::string const& state) const {
  return options_.netatmoBase + "/oauth2/authorize?client_id=" + percentEncoded(clientId) +
         "&redirect_uri=" + percentEncoded(redirect) + "&scope=read_station&state=" + percentEncoded(state) +
         "&response_type=code";
}

void StationService::forget() {
  std::lock_guard const turn(turn_);
  std::lock_guard const lock(keptMutex_);
  kept_.reset();
  std::error_code ignored;
  if (!options_.cacheFile.empty()) std::filesystem::remove(options_.cacheFile, ignored);
}

Result<void, std::string> StationService::relink(StationLink const& link) {
  auto changed = file_.change([&](StationLink& old) {
    secrets_.forget(old);
    old = link;
  });
  if (changed) forget();
  return changed;
}

Result<void, std::string> StationService::unlink() {
  if (auto const link = file_.read()) secrets_.forget(*link);
  if (auto const removed = file_.remove(); !removed) return removed;
  forget();
  history_.remove();
  return {};
}

std::vector<StationSample> StationService::history() const {
  auto const link = file_.read();
  if (!link || link->kind == StationLinkKind::none) return {};
  StationsReading const reading = readingOf(*link, kept(*link).value_or(StationsKept{}));
  StationReading const* const station = reading.station();
  if (station == nullptr) return {};
  return history_.read(nameOf(*link), *station, clock_.now());
}

/// Of this link and no other.
std::optional<StationsKept> StationService::kept(StationLink const& link) const {
  std::optional<StationsKept> found;
  if (options_.cacheFile.empty()) {
    std::lock_guard const lock(keptMutex_);
    found = kept_;
  } else {
    found = keptRecord<StationsKept>(options_.cacheFile, kLargestKept);
  }
  return found && found->link == nameOf(link) ? found : std::nullopt;
}

StationsReading StationService::read(StationNeed need, std::stop_token const& stop) {
  auto const link = file_.read();
  if (!link) {
    StationsReading unread;
    unread.state = StationState::failed;
    unread.problem =
        StationProblem::failed(ServiceFailure::of(ServiceFailure::Kind::incomplete, link.error()));
    return unread;
  }
  if (link->kind == StationLinkKind::none) return {};
  if (need == StationNeed::kept) return readingOf(*link, kept(*link).value_or(StationsKept{}));
  std::lock_guard const turn(turn_);
  std::optional<FileLock> others;
  if (!options_.cacheFile.empty()) {
    makePrivateFolders(options_.cacheFile.parent_path());
    others.emplace(options_.cacheFile.string() + ".lock");
  }
  auto known = kept(*link);
  bool const isAsked = !known || isDue(*known, need, clock_.now());
  return isAsked ? keep(*link, ask(*link, stop)) : readingOf(*link, std::move(*known));
}

StationsReading StationService::readingOf(StationLink const& link, StationsKept known) const {
  StationsReading reading;
  reading.kind = link.kind;
  reading.tokens = link.tokensIn();
  reading.chosen = link.chosen;
  if (link.kind == StationLinkKind::around) reading.around = link.name;
  reading.stations = std::move(known.stations);
  reading.together = known.together;
  reading.checkedAt = known.checkedAt;
  reading.nextAsk = known.nextAsk;
  reading.problem = std::move(known.problem);
  if (link.mustSignIn) reading.problem = StationProblem::of(Kind::signInAgain);
  bool const isCurrent = reading.checkedAt && !reading.problem;
  bool const mustSignIn = reading.problem && reading.problem->kind == Kind::signInAgain;
  reading.state = isCurrent    ? StationState::current
                  : mustSignIn ? StationState::signInAgain
                               : StationState::failed;
  return reading;
}

/// Keeps what was told or the failure beside what was told before.
StationsReading StationService::keep(StationLink const& link, Told told) {
  Instant const now = clock_.now();
  StationsKept record = kept(link).value_or(StationsKept{});
  record.link = nameOf(link);
  record.askedAt = now;
  if (told) {
    record.nextAsk = nextUpload(link, *told, now);
    record.stations = std::move(told->stations);
    record.together = told->together;
    record.checkedAt = now;
    record.problem.reset();
  } else {
    record.problem = told.error();
    record.nextAsk = nextTry(link, told.error(), now);
  }
  // Without its file the program asks alone; nothing is lost by it.
  if (!options_.cacheFile.empty()) std::ignore = writeFileAtomically(options_.cacheFile, encodeJson(record));
  std::lock_guard const lock(keptMutex_);
  kept_ = record;
  StationsReading reading = readingOf(link, std::move(record));
  if (StationReading const* const station = reading.station(); station != nullptr && reading.checkedAt == now)
    history_.note(nameOf(link), *station, now);
  return reading;
}

StationService::Told StationService::ask(StationLink const& link, std::stop_token const& stop) {
  if (link.kind == StationLinkKind::address) {
    auto document = probe(link.address, stop);
    if (!document) return std::unexpected(document.error());
    StationReading& station = document->station;
    station.id = link.address;
    if (!link.name.empty()) station.name = link.name;
    if (link.latitude && link.longitude) {
      station.latitude = link.latitude;
      station.longitude = link.longitude;
    }
    return StationsTold{{std::move(station)}, {}};
  }
  if (link.kind == StationLinkKind::around) {
    auto all = around({link.latitude.value_or(0), link.longitude.value_or(0)}, stop);
    if (!all) return std::unexpected(all.error());
    if (!link.chosen.empty()) {
      std::erase_if(all->nearest, [&](StationReading const& each) { return each.id != link.chosen; });
      return StationsTold{std::move(all->nearest), {}};
    }
    all->reading.name = link.name;
    return StationsTold{{std::move(all->reading)}, NeighbourCount{all->used, all->leftOut, all->withinKm}};
  }
  auto const body = netatmo("/api/getstationsdata", stop);
  if (!body) return std::unexpected(body.error());
  auto stations = parseNetatmoStations(*body);
  if (!stations) return std::unexpected(unreadable("list of stations", stations.error()));
  return StationsTold{std::move(*stations), {}};
}

/// A body that is no refusal. A token that the service no longer takes is renewed once.
Result<std::string, StationProblem> StationService::netatmo(std::string const& path,
                                                            std::stop_token const& stop) {
  constexpr std::size_t kLargestBody = std::size_t{2} << 20;
  constexpr std::chrono::seconds kTimeout{12};
  std::string refused;
  for (int attempt = 0;; ++attempt) {
    auto const token = tokens_.accessToken(stop, refused);
    if (!token) return std::unexpected(token.error());
    HttpRequest request;
    request.url = options_.netatmoBase + path;
    request.headers = {{"Authorization", "Bearer " + *token}, {"Accept", "application/json"}};
    request.timeout = kTimeout;
    request.maxBodyBytes = kLargestBody;
    auto answer = http_.get(request, stop);
    if (!answer) return std::unexpected(StationProblem::failed(ServiceFailure::network(answer.error())));
    auto const refusal = netatmoRefusal(answer->status, answer->body);
    if (!refusal) return std::move(answer->body);
    StationProblem problem = problemOf(*refusal, answer->status);
    if (problem.kind != Kind::expired) return std::unexpected(std::move(problem));
    if (attempt > 0) return std::unexpected(StationProblem::failed(ServiceFailure::answered(answer->status)));
    refused = *token;
  }
}

Result<PublicStations, StationProblem> StationService::around(Coordinate place, std::stop_token const& stop) {
  auto const body = netatmo(
      "/api/getpublicdata?" + boxAround(place, kPublicReachKm) + "&required_data=temperature&filter=true",
      stop);
  if (!body) return std::unexpected(body.error());
  auto stations = parseNetatmoPublic(*body);
  if (!stations) return std::unexpected(unreadable("list of public stations", stations.error()));
  return publicStations(std::move(*stations), place, std::nullopt, clock_.now());
}

Result<StationDocument, StationProblem> StationService::probe(std::string const& address,
                                                              std::stop_token const& stop) {
  HttpRequest request;
  request.url = stationAddress(address);
  request.headers = {{"Accept", "application/json"}};
  request.timeout = kLocalTimeout;
  request.maxBodyBytes = kLargestDocument;
  auto const answer = http_.get(request, stop);
  if (!answer) return std::unexpected(StationProblem::failed(ServiceFailure::network(answer.error())));
  constexpr int kOk = 200, kNotOk = 300;
  if (answer->status < kOk || answer->status >= kNotOk)
    return std::unexpected(StationProblem::failed(ServiceFailure::answered(answer->status)));
  auto document = parseStationDocument(answer->body, clock_.now());
  if (!document) return std::unexpected(unreadable("reading of a station", document.error()));
  return std::move(*document);
}

}  // namespace nimbara
