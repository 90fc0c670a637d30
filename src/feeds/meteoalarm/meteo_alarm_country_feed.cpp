#include "feeds/meteoalarm/meteo_alarm_country_feed.h"

#include "feeds/meteoalarm/meteo_alarm_json_feed.h"

#include <algorithm>

namespace nimbara {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kCacheLife = 300s;

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

/// Both forms lie on one host: what kept the one from being asked keeps the other one.
bool isHostAway(ServiceFailure const& failure) {
  using enum HttpError::Kind;
  constexpr HttpError::Kind kAway[] = {unresolvedHost, connectionFailed, tlsFailed, cancelled};
  return std::ranges::find(kAway, failure.transport) != std::end(kAway);
}

}  // namespace

MeteoAlarmCountryFeed::MeteoAlarmCountryFeed(HttpClient& http, Clock const& clock, Addresses const& addresses)
    : http_(http),
      clock_(clock),
      forms_{MeteoAlarmFeedForm(clock, addresses.atom, "application/atom+xml", readAtom),
             MeteoAlarmFeedForm(clock, addresses.json, "application/json",
                                [documents = addresses.documents](std::string_view body) {
                                  return readJson(body, documents);
                                })} {}

MeteoAlarmCountryFeed::Answer MeteoAlarmCountryFeed::get(std::stop_token const& stop) {
  std::unique_lock lock(mutex_);
  if (isAsking_) {
    answered_.wait(lock, stop, [this] { return !isAsking_; });
    return known();
  }
  if (isFresh() || std::ranges::all_of(forms_, &MeteoAlarmFeedForm::rests)) return known();
  isAsking_ = true;
  lock.unlock();
  Asked const asked = ask(stop);
  lock.lock();
  isAsking_ = false;
  failure_ = asked.form == nullptr ? asked.failure : std::nullopt;
  if (asked.form != nullptr) {
    content_ = asked.form->content();
    if (!content_->messages.empty()) messages_ = content_;
    lastFetchDate_ = clock_.now();
  }
  answered_.notify_all();
  return known();
}

MeteoAlarmCountryFeed::Asked MeteoAlarmCountryFeed::ask(std::stop_token const& stop) {
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

/// A clock that was set back makes no feed fresh.
bool MeteoAlarmCountryFeed::isFresh() const {
  if (failure_ || !lastFetchDate_) return false;
  Instant const now = clock_.now();
  return *lastFetchDate_ <= now && now - *lastFetchDate_ < kCacheLife;
}

}  // namespace nimbara
