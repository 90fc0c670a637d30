#include "feeds/source_feeds.h"

#include "base/files/file_lock.h"
#include "base/files/private_folders.h"
#include "base/json/json_codec.h"
#include "feeds/fetching/feed_exchange.h"
#include "feeds/fetching/kept_record.h"
#include "platform/network_reach.h"

namespace nimbara {

namespace {

constexpr std::size_t kLargestNote = std::size_t{64} << 10;
constexpr std::chrono::seconds kServerRetry{60};
/// Less than any connection to a source takes.
constexpr std::chrono::milliseconds kBarelyBegun{5};
constexpr int kNotFound = 404;
/// How often the lock of another process, each time for half a second, is waited for: a question of its own
/// and some.
constexpr int kPatience = 60;

constexpr std::string_view kBodyFile = ".json";
constexpr std::string_view kNoteFile = ".asked.json";

/// What the file of a feed holds.
struct KeptFeed {
  std::string body;
  Instant changedAt;
  Instant fetchedAt;
};

struct Source {
  std::string_view name;
  std::chrono::seconds period;
  std::chrono::seconds pauseAfterFailure;
};

/// CelesTrak gives each group out once in its own period and blocks whoever goes on asking after a refusal.
Source const& sourceOf(FeedKey::Kind kind) {
  static constexpr Source kQuakes{"usgs", std::chrono::seconds(60), std::chrono::seconds(60)};
  static constexpr Source kSatellites{"celestrak", std::chrono::hours(6), std::chrono::hours(2)};
  return kind == FeedKey::Kind::quakes ? kQuakes : kSatellites;
}

/// Groups are not asked for all at the same moment: up to a tenth of their period later, each its own share.
std::chrono::seconds spread(FeedKey const& key) {
  if (key.kind == FeedKey::Kind::quakes) return std::chrono::seconds(0);
  auto const share = std::hash<std::string>()(key.group) % 100;
  return sourceOf(key.kind).period * static_cast<int>(share) / 1000;
}

}  // namespace

template <>
inline constexpr auto jsonFields<KeptFeed> =
    FieldList{field("fetchedAt", &KeptFeed::fetchedAt), field("changedAt", &KeptFeed::changedAt),
              field("body", &KeptFeed::body)};
template <>
inline constexpr auto jsonFields<SourceQuestion> = FieldList{
    field("askedAt", &SourceQuestion::askedAt), field("pauseSeconds", &SourceQuestion::pauseSeconds),
    field("failure", &SourceQuestion::failure), fieldOr("tag", &SourceQuestion::tag),
    fieldOr("open", &SourceQuestion::isOpen)};

SourceFeeds::SourceFeeds(HttpClient& http, Clock const& clock, Options options)
    : http_(http), clock_(clock), options_(std::move(options)) {}

std::chrono::seconds SourceFeeds::periodOf(FeedKey::Kind kind) {
  return sourceOf(kind).period;
}

Result<FeedBody, ServiceFailure> SourceFeeds::get(FeedKey const& key, std::stop_token const& stop) {
  Reading reading = read(key, stop);
  if (reading.failure) return std::unexpected(std::move(*reading.failure));
  return FeedBody{reading.kept->body, reading.kept->fetchedAt};
}

SourceFeeds::Reading SourceFeeds::read(FeedKey const& key, std::stop_token const& stop) {
  State state = stateOf(key);
  // Another process's question is waited for.
  if (!isDue(state) && !state.question.isOpen) return readingOf(state);
  std::unique_lock turn(turns_[static_cast<std::size_t>(key.kind)], std::defer_lock);
  if (!options_.isServer || !state.kept) {
    turn.lock();
  } else if (!turn.try_lock()) {
    return readingOf(state);
  }
  auto const others = waitForOthers(key, stop);
  if (stop.stop_requested())
    return {state.kept, ServiceFailure::network({HttpError::Kind::cancelled, "the request was cancelled"})};
  if (others && others->isTaken()) return {state.kept, ServiceFailure::of(ServiceFailure::Kind::othersAsk)};
  state = stateOf(key, true);  // another thread or process may have renewed it meanwhile
  if (!isDue(state)) return readingOf(state);
  state = renewed(key, std::move(state), stop);
  remember(key, state);
  return readingOf(state);
}

/// Other processes ask the same source. Null where nothing is shared with any.
std::unique_ptr<FileLock> SourceFeeds::waitForOthers(FeedKey const& key, std::stop_token const& stop) const {
  if (options_.folder.empty()) return nullptr;
  std::ignore = makePrivateFolders(options_.folder);
  auto const file = options_.folder / (std::string(sourceOf(key.kind).name) + ".lock");
  auto lock = std::make_unique<FileLock>(file);
  for (int i = 1; lock->isTaken() && i < kPatience && !stop.stop_requested(); ++i) {
    lock = std::make_unique<FileLock>(file);
  }
  return lock;
}

std::chrono::seconds SourceFeeds::pauseAfterAnswer(FeedKey const& key) const {
  return sourceOf(key.kind).period + (options_.isServer ? spread(key) : std::chrono::seconds(0));
}

bool SourceFeeds::isDue(State const& state) const {
  if (!state.kept && !state.question.failure) return true;
  return !isYounger(state.question.askedAt, std::chrono::seconds(state.question.pauseSeconds), clock_.now());
}

SourceFeeds::Reading SourceFeeds::readingOf(State const& state) const {
  if (state.kept && !state.question.failure) return {state.kept, {}};
  auto const next = state.question.askedAt + std::chrono::seconds(state.question.pauseSeconds);
  auto failure = state.question.failure.value_or(ServiceFailure::of(ServiceFailure::Kind::noAnswer));
  if (next > clock_.now()) failure.nextTry = next;
  return {state.kept, std::move(failure)};
}

/// What is newer: what this process remembers or what the folder holds. A server, which has it to itself for
/// the most part, looks there only for what it does not remember, and before it asks.
SourceFeeds::State SourceFeeds::stateOf(FeedKey const& key, bool isAboutToAsk) {
  std::lock_guard const lock(mutex_);
  auto const found = states_.find(key);
  bool const isKnown = found != states_.end();
  if (isKnown && options_.isServer && !isAboutToAsk) return found->second;
  State inFolder = stored(key);
  bool const isNewer = !isKnown || inFolder.question.askedAt > found->second.question.askedAt ||
                       (inFolder.kept && !found->second.kept);
  if (!isNewer) return found->second;
  if (options_.isServer) states_[key] = inFolder;
  return inFolder;
}

/// The folder remembers bodies for programs that ask seldom.
void SourceFeeds::remember(FeedKey const& key, State state) {
  bool const isNoted = note(key, state.question);
  if (isNoted && !options_.isServer) state.kept.reset();
  std::lock_guard const lock(mutex_);
  states_[key] = std::move(state);
}

SourceFeeds::State SourceFeeds::stored(FeedKey const& key) const {
  constexpr std::size_t kLargestFile = std::size_t{48} << 20;
  State state;
  if (options_.folder.empty()) return state;
  auto question = keptRecord<SourceQuestion>(fileOf(key, kNoteFile), kLargestNote);
  auto kept = keptRecord<KeptFeed>(fileOf(key, kBodyFile), kLargestFile);
  if (question) state.question = std::move(*question);
  if (!kept) {
    state.question.tag.clear();
    return state;
  }
  state.kept =
      std::make_shared<SourceBody const>(SourceBody{std::move(kept->body), kept->changedAt, kept->fetchedAt});
  if (question) return state;
  state.question = {state.kept->fetchedAt, pauseAfterAnswer(key).count(), {}, {}, false};
  return state;
}

/// Whether it is noted. A disk that cannot be written to costs no more than the memory after a restart.
bool SourceFeeds::note(FeedKey const& key, SourceQuestion const& question) const {
  if (options_.folder.empty()) return false;
  auto const written = writeFileAtomically(fileOf(key, kNoteFile), encodeJson(question));
  if (!written) options_.log(key.name() + ": " + written.error());
  return written.has_value();
}

HttpRequest SourceFeeds::requestFor(FeedKey const& key) const {
  constexpr std::size_t kLargestBody = std::size_t{16} << 20;
  constexpr std::chrono::seconds kTimeout{25};
  HttpRequest request;
  request.url = key.kind == FeedKey::Kind::quakes
                    ? options_.usgsBase + "/earthquakes/feed/v1.0/summary/all_day.geojson"
                    : options_.celestrakBase + "/NORAD/elements/gp.php?GROUP=" + key.group + "&FORMAT=CSV";
  request.timeout = kTimeout;
  request.maxBodyBytes = kLargestBody;
  return request;
}

Result<std::optional<HttpResponse>, ServiceFailure> SourceFeeds::ask(FeedKey const& key, State const& state,
                                                                     std::stop_token const& stop) const {
  auto const kept = state.kept ? std::optional(Validators{state.question.tag, {}}) : std::nullopt;
  auto answer = exchange(http_, requestFor(key), kept, stop);
  bool const isUnknown = !answer && answer.error().status == kNotFound && !options_.relayBase.empty();
  return isUnknown ? exchange(http_, relayRequest(options_.relayBase, key), {}, stop) : std::move(answer);
}

/// The question is noted before it is asked: a run that is killed has asked all the same.
SourceFeeds::State SourceFeeds::renewed(FeedKey const& key, State state, std::stop_token const& stop) const {
  SourceQuestion const before = state.question;
  state.question.askedAt = clock_.now();
  state.question.pauseSeconds = sourceOf(key.kind).pauseAfterFailure.count();
  state.question.failure =
      ServiceFailure::of(ServiceFailure::Kind::noAnswer, "the last request got no response");
  state.question.isOpen = true;
  std::ignore = note(key, state.question);
  state.question.isOpen = false;
  auto const begun = clock_.steadyNow();
  auto const answer = ask(key, state, stop);
  auto failure = answer ? take(key, state, *answer) : std::optional(answer.error());
  if (!failure) return state;
  state.question.failure = failure;
  options_.log(key.name() + ": " + sentenceOf(*failure));
  // A command that has used up its time gives up before it asks.
  bool const wasNeverAsked =
      failure->transport == HttpError::Kind::cancelled && clock_.steadyNow() - begun < kBarelyBegun;
  bool const isAway = failure->transport && isNetworkAway(*failure->transport);
  if (!wasNeverAsked && !isAway) return state;
  // Nobody was asked. A server, which is asked all the time, looks again in a while.
  state.question.askedAt = options_.isServer ? state.question.askedAt : before.askedAt;
  state.question.pauseSeconds = options_.isServer ? kServerRetry.count() : before.pauseSeconds;
  return state;
}

/// Takes an answer over into the state, or says why it cannot be taken.
std::optional<ServiceFailure> SourceFeeds::take(FeedKey const& key, State& state,
                                                std::optional<HttpResponse> const& response) const {
  if (!response) {
    accept(key, state, state.kept->body);
    return std::nullopt;
  }
  auto body = servedBody(key, response->body);
  if (!body) return std::move(body.error());
  state.question.tag = Validators::of(*response).etag;
  accept(key, state, std::move(*body));
  return std::nullopt;
}

void SourceFeeds::accept(FeedKey const& key, State& state, std::string body) const {
  Instant const now = clock_.now();
  bool const isSame = state.kept && state.kept->body == body;
  Instant const changedAt = isSame ? state.kept->changedAt : now;
  state.kept = std::make_shared<SourceBody const>(SourceBody{std::move(body), changedAt, now});
  state.question = {now, pauseAfterAnswer(key).count(), {}, std::move(state.question.tag), false};
  if (options_.folder.empty()) return;
  auto const written = writeFileAtomically(
      fileOf(key, kBodyFile), encodeJson(KeptFeed{state.kept->body, state.kept->changedAt, now}));
  if (!written) options_.log(key.name() + ": " + written.error());
}

std::filesystem::path SourceFeeds::fileOf(FeedKey const& key, std::string_view ending) const {
  return options_.folder / (key.name() + std::string(ending));
}

}  // namespace nimbara
