#include "feedserver/feed_keeper.h"

#include "base/file.h"
#include "base/json_codec.h"
#include "base/sha256.h"
#include "feeds/earthquake_event.h"
#include "feeds/feed_exchange.h"
#include "feedserver/element_text.h"
#include "feedserver/gzip.h"

namespace nimbara {

namespace {

constexpr std::size_t kLargestBody = std::size_t{16} << 20;
constexpr std::size_t kLargestFile = std::size_t{48} << 20;
constexpr std::chrono::seconds kTimeout{25};
constexpr int kNotModified = 304;

/// What the file of a feed holds.
struct KeptFeed {
  std::string body;
  Instant changedAt;
  Instant fetchedAt;
};

struct Source {
  std::chrono::seconds period;
  std::chrono::seconds pauseAfterFailure;
  std::string_view contentType;
};

/// CelesTrak gives each group out once in its own period and blocks whoever goes on asking after a refusal.
Source const& sourceOf(FeedKey const& key) {
  static constexpr Source kQuakes{std::chrono::seconds(60), std::chrono::seconds(60), "application/json"};
  static constexpr Source kSatellites{std::chrono::hours(6), std::chrono::hours(2),
                                      "text/plain; charset=utf-8"};
  return key.kind == FeedKey::Kind::quakes ? kQuakes : kSatellites;
}

/// Groups are not asked for all at the same moment: up to a tenth of their period later, each its own share.
std::chrono::seconds spread(FeedKey const& key) {
  if (key.kind == FeedKey::Kind::quakes) return std::chrono::seconds(0);
  auto const share = std::hash<std::string>()(key.group) % 100;
  return sourceOf(key).period * static_cast<int>(share) / 1000;
}

/// The body as it is to be served; the error is a sentence.
Result<std::string, std::string> servedBody(FeedKey const& key, std::string const& body) {
  if (key.kind == FeedKey::Kind::quakes) {
    auto const events = parseEarthquakes(body);
    if (!events)
      return std::unexpected("the answer is no list of earthquakes (" + events.error().text() + ")");
    return body;
  }
  auto elements = elementText(body);
  if (!elements) return std::unexpected(std::move(elements.error()));
  return std::move(elements->text);
}

std::shared_ptr<ServedFeed const> served(FeedKey const& key, KeptFeed kept) {
  Source const& source = sourceOf(key);
  std::string compressed = gzipped(kept.body);
  std::string tag = sha256Hex(kept.body).substr(0, 32);
  return std::make_shared<ServedFeed const>(ServedFeed{std::move(kept.body), std::move(compressed),
                                                       std::string(source.contentType), std::move(tag),
                                                       kept.changedAt, kept.fetchedAt, source.period});
}

std::shared_ptr<ServedFeed const> confirmed(ServedFeed const& feed, Instant now) {
  ServedFeed copy = feed;
  copy.fetchedAt = now;
  return std::make_shared<ServedFeed const>(std::move(copy));
}

}  // namespace

template <>
inline constexpr auto jsonFields<KeptFeed> =
    std::tuple{field("fetchedAt", &KeptFeed::fetchedAt), field("changedAt", &KeptFeed::changedAt),
               field("body", &KeptFeed::body)};

FeedKeeper::FeedKeeper(HttpClient& http, Clock const& clock, Options options)
    : http_(http), clock_(clock), options_(std::move(options)) {}

std::shared_ptr<ServedFeed const> FeedKeeper::get(FeedKey const& key) {
  State state = stateOf(key);
  if (!isDue(state)) return state.feed;
  std::unique_lock turn(sources_, std::defer_lock);
  if (!state.feed) {
    turn.lock();
  } else if (!turn.try_lock()) {
    return state.feed;
  }
  state = stateOf(key);  // somebody may have renewed it meanwhile
  if (isDue(state)) renew(key, state);
  return stateOf(key).feed;
}

bool FeedKeeper::isDue(State const& state) const {
  return !isYounger(state.askedAt, state.pause, clock_.now());
}

/// As kept, the first time from the disk.
FeedKeeper::State FeedKeeper::stateOf(FeedKey const& key) {
  std::lock_guard const lock(mutex_);
  if (auto const found = states_.find(key); found != states_.end()) return found->second;
  State& state = states_[key];
  auto const content =
      options_.folder.empty() ? std::unexpected(std::string()) : readFile(fileOf(key), kLargestFile);
  auto kept = content ? decodeJson<KeptFeed>(*content) : std::unexpected(DecodeError{});
  if (!kept) return state;
  state.askedAt = kept->fetchedAt;
  state.pause = sourceOf(key).period + spread(key);
  state.feed = served(key, std::move(*kept));
  return state;
}

HttpRequest FeedKeeper::requestFor(FeedKey const& key, State const& state) const {
  HttpRequest request;
  request.url = key.kind == FeedKey::Kind::quakes
                    ? options_.usgsBase + "/earthquakes/feed/v1.0/summary/all_day.geojson"
                    : options_.celestrakBase + "/NORAD/elements/gp.php?GROUP=" + key.group + "&FORMAT=CSV";
  request.timeout = kTimeout;
  request.maxBodyBytes = kLargestBody;
  if (state.feed && !state.sourceTag.empty()) request.headers.emplace_back("If-None-Match", state.sourceTag);
  return request;
}

/// Takes an answer over into the state, whatever it is; the pause says when to ask again.
void FeedKeeper::take(FeedKey const& key, State& state, HttpResponse const& response) const {
  Instant const now = clock_.now();
  auto const accept = [&](std::shared_ptr<ServedFeed const> feed) {
    state.feed = std::move(feed);
    state.pause = sourceOf(key).period + spread(key);
    if (options_.folder.empty()) return;
    auto const written = writeFileAtomically(
        fileOf(key), encodeJson(KeptFeed{state.feed->body, state.feed->changedAt, state.feed->fetchedAt}));
    if (!written) options_.log(key.name() + ": " + written.error());
  };
  if (response.status == kNotModified && state.feed) return accept(confirmed(*state.feed, now));
  if (!isSuccess(response.status)) return options_.log(key.name() + ": " + statusProblem(response.status));
  auto body = servedBody(key, response.body);
  if (!body) return options_.log(key.name() + ": " + body.error());
  state.sourceTag = response.header("ETag").value_or("");
  bool const isSame = state.feed && state.feed->body == *body;
  accept(isSame ? confirmed(*state.feed, now) : served(key, {std::move(*body), now, now}));
}

void FeedKeeper::renew(FeedKey const& key, State state) {
  state.askedAt = clock_.now();
  state.pause = sourceOf(key).pauseAfterFailure;
  auto const response = exchange(http_, requestFor(key, state), {});
  if (response) {
    take(key, state, *response);
  } else {
    options_.log(key.name() + ": " + response.error());
  }
  std::lock_guard const lock(mutex_);
  states_[key] = std::move(state);
}

std::filesystem::path FeedKeeper::fileOf(FeedKey const& key) const {
  return options_.folder / (key.name() + ".json");
}

}  // namespace nimbara
