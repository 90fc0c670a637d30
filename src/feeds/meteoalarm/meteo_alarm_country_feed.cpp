#include "feeds/meteoalarm/meteo_alarm_country_feed.h"

#include "base/files/private_folders.h"
#include "feeds/meteoalarm/meteo_alarm_json_feed.h"

#include <algorithm>

namespace nimbara {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kCacheLife = 300s;
/// How often the lock of another process, each time for half a second, is waited for: as long as a feed may
/// be silent, and some.
constexpr int kPatience = 20;

Result<MeteoAlarmContent, std::string> readAtom(std::string_view body) {
  MeteoAlarmAtomParser parser;
  if (auto const done = parser.parse(body); !done) return std::unexpected(done.error());
  return MeteoAlarmContent{feedOf(parser.takeEntries()), {}};
}

Result<MeteoAlarmContent, std::string> readJson(std::string_view body, std::string_view documents) {
  auto feed = parseMeteoAlarmJson(body, documents);
  if (!feed) return std::unexpected(feed.error());
  return MeteoAlarmContent{feedOf(std::move(feed->entries)), std::move(feed->messages)};
}

std::filesystem::path with(std::filesystem::path file, std::string_view ending) {
  return file.empty() ? file : std::move(file.concat(ending));
}

/// Both forms lie on one host: what kept the one from being asked keeps the other one.
bool isHostAway(ServiceFailure const& failure) {
  using enum HttpError::Kind;
  constexpr HttpError::Kind kAway[] = {unresolvedHost, connectionFailed, tlsFailed, cancelled};
  return std::ranges::find(kAway, failure.transport) != std::end(kAway);
}

}  // namespace

MeteoAlarmCountryFeed::MeteoAlarmCountryFeed(HttpClient& http, Clock const& clock, Addresses const& addresses,
                                             std::filesystem::path file)
    : http_(http),
      clock_(clock),
      file_(std::move(file)),
      forms_{
          MeteoAlarmFeedForm(clock, {addresses.atom, "application/atom+xml", readAtom, with(file_, ".atom")}),
          MeteoAlarmFeedForm(clock, {addresses.json, "application/json",
                                     [documents = addresses.documents](std::string_view body) {
                                       return readJson(body, documents);
                                     },
                                     with(file_, ".json")})} {}

MeteoAlarmCountryFeed::Answer MeteoAlarmCountryFeed::get(std::stop_token const& stop) {
  std::unique_lock lock(mutex_);
  if (isAsking_) {
    answered_.wait(lock, stop, [this] { return !isAsking_; });
    return known();
  }
  if (isFresh()) return known();
  isAsking_ = true;
  lock.unlock();
  Asked const asked = ask(stop);
  lock.lock();
  isAsking_ = false;
  failure_ = asked.form == nullptr ? asked.failure : std::nullopt;
  MeteoAlarmFeedForm const* const latest = asked.form != nullptr ? asked.form : latestForm();
  if (latest != nullptr) {
    content_ = latest->content();
    if (!content_->messages.empty()) messages_ = content_;
    lastFetchDate_ = latest->confirmedAt();
  }
  answered_.notify_all();
  return known();
}

/// What another process has had of the service is as good as an answer.
MeteoAlarmCountryFeed::Asked MeteoAlarmCountryFeed::ask(std::stop_token const& stop) {
  if (auto known = shared()) return *std::move(known);
  auto const others = waitForOthers(stop);
  if (others) {
    if (auto known = shared()) return *std::move(known);
    if (others->isTaken()) return {nullptr, ServiceFailure::of(ServiceFailure::Kind::othersAsk)};
  }
  return askForms(stop);
}

MeteoAlarmCountryFeed::Asked MeteoAlarmCountryFeed::askForms(std::stop_token const& stop) {
  Asked asked;
  for (MeteoAlarmFeedForm& form : forms_) {
    if (form.rests()) continue;
    auto const failure = form.ask(http_, stop);
    if (!failure) return {&form, {}};
    if (!asked.failure) asked.failure = failure;
    if (stop.stop_requested() || isHostAway(*failure)) break;
  }
  return asked;
}

/// Nothing where the service is to be asked.
std::optional<MeteoAlarmCountryFeed::Asked> MeteoAlarmCountryFeed::shared() {
  for (MeteoAlarmFeedForm& form : forms_) form.lookUp();
  MeteoAlarmFeedForm const* const latest = latestForm();
  bool const isFresh = latest != nullptr && isYounger(*latest->confirmedAt(), kCacheLife, clock_.now());
  if (isFresh) return Asked{latest, {}};
  if (!std::ranges::all_of(forms_, &MeteoAlarmFeedForm::rests)) return std::nullopt;
  return Asked{nullptr, forms_.front().failure()};
}

/// Of which something is known, the one that was confirmed last.
MeteoAlarmFeedForm const* MeteoAlarmCountryFeed::latestForm() const {
  auto const latest = std::ranges::max_element(forms_, {}, &MeteoAlarmFeedForm::confirmedAt);
  return latest->content() ? &*latest : nullptr;
}

/// Null where nothing is shared.
std::unique_ptr<FileLock> MeteoAlarmCountryFeed::waitForOthers(std::stop_token const& stop) const {
  if (file_.empty()) return nullptr;
  std::ignore = makePrivateFolders(file_.parent_path());
  auto const file = with(file_, ".lock");
  auto lock = std::make_unique<FileLock>(file);
  for (int i = 1; lock->isTaken() && i < kPatience && !stop.stop_requested(); ++i) {
    lock = std::make_unique<FileLock>(file);
  }
  return lock;
}

/// A clock that was set back makes no feed fresh.
bool MeteoAlarmCountryFeed::isFresh() const {
  return !failure_ && lastFetchDate_ && isYounger(*lastFetchDate_, kCacheLife, clock_.now());
}

}  // namespace nimbara
