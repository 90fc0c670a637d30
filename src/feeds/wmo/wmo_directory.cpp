#include "feeds/wmo/wmo_directory.h"

#include "base/json/json_codec.h"
#include "feeds/fetching/feed_exchange.h"
#include "feeds/fetching/kept_record.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::size_t kLargestKept = std::size_t{1} << 20;
constexpr std::chrono::days kSeenStep{1};

}  // namespace

WmoDirectory::WmoDirectory(HttpClient& http, Clock const& clock, std::string baseUrl,
                           std::filesystem::path const& folder)
    : http_(http),
      clock_(clock),
      baseUrl_(std::move(baseUrl)),
      file_(folder.empty() ? folder : folder / "wmo-directory.json") {
  readKept();
}

void WmoDirectory::renew(std::stop_token const& stop) {
  bool const isResting = restsUntil_ && clock_.steadyNow() < *restsUntil_;
  if (isResting || !(isDue(record_.membersAt) || isDue(record_.sourcesAt))) return;
  readKept();  // another process may have been quicker
  failure_.reset();
  bool isRenewed = false;
  if (isDue(record_.membersAt))
    isRenewed = ask("/json/wmo_member.json", parseWmoMembers, record_.members, record_.membersAt, stop);
  bool const isAway = failure_ && failure_->kind == ServiceFailure::Kind::network;
  if (!isAway && isDue(record_.sourcesAt)) {
    isRenewed |= ask("/v2/json/sources.json", parseWmoSources, record_.countries, record_.sourcesAt, stop);
  }
  if (failure_ && !stop.stop_requested()) restsUntil_ = clock_.steadyNow() + kRestAfterFailure;
  if (isRenewed) keep();
}

std::optional<std::string> WmoDirectory::memberNumber(std::string_view country) const {
  if (country.empty()) return std::string();
  if (!record_.membersAt) return builtInWmoMember(country);
  auto const found = record_.members.find(country);
  return found == record_.members.end() ? std::string() : found->second;
}

bool WmoDirectory::isMirrored(std::string_view country) const {
  auto const seen = record_.seen.find(country);
  if (seen != record_.seen.end() && isYounger(seen->second, kSeenLife, clock_.now())) return true;
  auto const countries = record_.sourcesAt ? record_.countries : builtInWmoCountries();
  return std::ranges::binary_search(countries, country);
}

void WmoDirectory::noteWarningOf(std::string_view country) {
  auto const seen = record_.seen.find(country);
  if (seen != record_.seen.end() && isYounger(seen->second, kSeenStep, clock_.now())) return;
  record_.seen[std::string(country)] = clock_.now();
  keep();
}

bool WmoDirectory::isDue(std::optional<Instant> const& at) const {
  return !at || !isYounger(*at, kLife, clock_.now());
}

/// What cannot be had or read leaves what is known.
template <class Parse, class T>
bool WmoDirectory::ask(std::string const& path, Parse const& parse, T& value, std::optional<Instant>& at,
                       std::stop_token const& stop) {
  constexpr std::chrono::seconds kLongestSilence{8};
  constexpr std::chrono::seconds kTimeout{15};
  HttpRequest request;
  request.url = baseUrl_ + path;
  request.headers = {{"Accept", "application/json"}};
  request.timeout = kTimeout;
  request.longestSilence = kLongestSilence;
  auto answer = exchange(http_, std::move(request), std::nullopt, stop);
  if (!answer) {
    failure_ = std::move(answer.error());
    return false;
  }
  auto parsed = parse((*answer)->body);
  if (!parsed) {
    failure_ = ServiceFailure::of(ServiceFailure::Kind::unreadable,
                                  "the response is not a valid directory (" + parsed.error().text() + ")");
    return false;
  }
  value = std::move(*parsed);
  at = clock_.now();
  return true;
}

/// Of two records each list counts that was had last.
void WmoDirectory::readKept() {
  if (file_.empty()) return;
  auto kept = keptRecord<WmoDirectoryRecord>(file_, kLargestKept);
  if (!kept) return;
  if (kept->membersAt > record_.membersAt) {
    record_.membersAt = kept->membersAt;
    record_.members = std::move(kept->members);
  }
  if (kept->sourcesAt > record_.sourcesAt) {
    record_.sourcesAt = kept->sourcesAt;
    record_.countries = std::move(kept->countries);
  }
  for (auto const& [country, at] : kept->seen) {
    auto& own = record_.seen[country];
    own = std::max(own, at);
  }
}

/// A disk that fails costs a request in the next process.
void WmoDirectory::keep() const {
  if (!file_.empty()) std::ignore = writeFileAtomically(file_, encodeJson(record_));
}

}  // namespace nimbara
