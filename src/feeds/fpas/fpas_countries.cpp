#include "feeds/fpas/fpas_countries.h"

#include "base/json/json_codec.h"
#include "base/text/text.h"
#include "feeds/fetching/feed_exchange.h"
#include "feeds/fetching/kept_record.h"

#include <algorithm>

namespace nimbara {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t kLargestNote = std::size_t{256} << 10;
constexpr std::chrono::milliseconds kLife = 6h;
/// While the server cannot say it anew. Which feeds it reads changes by hand, some times a year.
constexpr std::chrono::milliseconds kLongestTrust = std::chrono::days(7);
constexpr std::chrono::milliseconds kRestAfterFailure = 10min;
/// The server does not say when a feed last answered, only when the newest alert in it was sent. Calm weeks
/// are common; a country without one alert for longer is more likely not read than without weather.
constexpr std::chrono::milliseconds kLongestCalm = std::chrono::days(30);
/// Of mainland China the server has the messages without their areas: no box finds them.
constexpr std::string_view kNeverFound[] = {"CN"};

}  // namespace

template <>
inline constexpr auto jsonFields<FpasCountryNote> =
    FieldList{field("checkedAt", &FpasCountryNote::checkedAt), fieldOr("feeds", &FpasCountryNote::feeds)};

FpasCountries::FpasCountries(HttpClient& http, Clock const& clock, std::string url,
                             std::filesystem::path directory)
    : http_(http), clock_(clock), url_(std::move(url)), directory_(std::move(directory)) {}

FpasCountries::Verdict FpasCountries::judge(std::string const& country, std::stop_token const& stop) {
  using enum ServiceFailure::Kind;
  if (std::ranges::count(kNeverFound, country) > 0) return {true, {}};
  Known& known = known_[country];
  if (isDue(known)) ask(country, known, stop);
  Instant const now = clock_.now();
  FpasCountryNote const& note = known.note;
  if (!note.checkedAt || !isYounger(*note.checkedAt, kLongestTrust, now)) return {false, known.failure};
  std::optional<Instant> lastAlert;
  bool isRead = false;
  for (FpasFeed const& feed : note.feeds) {
    if (feed.country != country || !feed.isOperating) continue;
    isRead = true;
    lastAlert = std::max(lastAlert, feed.lastAlertAt);
  }
  if (!isRead) return {true, {}};
  bool const isAlive = lastAlert && now - *lastAlert < kLongestCalm;
  if (isAlive) return {};
  return {false, ServiceFailure::of(incomplete, "the server has had no alert of the country's feeds " +
                                                    (lastAlert ? "since " + formatIso8601(*lastAlert)
                                                               : std::string("yet")))};
}

bool FpasCountries::isDue(Known const& known) const {
  Instant const now = clock_.now();
  if (known.note.checkedAt && isYounger(*known.note.checkedAt, kLife, now)) return false;
  return !known.failedAt || !isYounger(*known.failedAt, kRestAfterFailure, now);
}

/// What another run or process has had of the server is as good as an answer.
void FpasCountries::ask(std::string const& country, Known& known, std::stop_token const& stop) const {
  constexpr int kOk = 200;
  constexpr std::size_t kLargestBody = std::size_t{1} << 20;
  constexpr std::chrono::seconds kTimeout{15};
  using enum ServiceFailure::Kind;
  if (!directory_.empty()) {
    auto kept = keptRecord<FpasCountryNote>(fileOf(country), kLargestNote);
    if (kept && kept->checkedAt > known.note.checkedAt) known.note = std::move(*kept);
    if (known.note.checkedAt && isYounger(*known.note.checkedAt, kLife, clock_.now())) return;
  }
  HttpRequest request{url_ + asciiLowered(country), {{"Accept", "application/json"}}, kTimeout, kLargestBody};
  auto const answer = exchange(http_, std::move(request), std::nullopt, stop);
  auto const fail = [&](ServiceFailure failure) {
    if (!stop.stop_requested()) known.failedAt = clock_.now();
    known.failure = std::move(failure);
  };
  if (!answer) return fail(answer.error());
  if ((*answer)->status != kOk) return fail(ServiceFailure::answered((*answer)->status));
  auto feeds = parseFpasFeeds((*answer)->body);
  if (!feeds) {
    return fail(ServiceFailure::of(
        unreadable, "the response is not a valid list of feeds (" + feeds.error().text() + ")"));
  }
  known = {{clock_.now(), std::move(*feeds)}, {}, {}};
  if (!directory_.empty()) std::ignore = writeFileAtomically(fileOf(country), encodeJson(known.note));
}

std::filesystem::path FpasCountries::fileOf(std::string const& country) const {
  return directory_ / ("feeds-" + country + ".json");
}

}  // namespace nimbara
