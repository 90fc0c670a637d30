#include "globe/satellite_feed.h"

#include "base/file.h"
#include "base/text.h"

namespace nimbara {

namespace {

constexpr std::size_t kLargestText = std::size_t{16} << 20;
constexpr int kRefused = 403;

bool isFresh(Instant fetched, Instant now) {
  return fetched <= now && now - fetched < SatelliteFeed::kFreshFor;
}

/// Element sets, or nothing at all, which is a group without satellites. Pages and messages are neither.
bool isElements(std::string_view body) {
  return trimmed(body).empty() || !SGP4::readElements(body).elements.empty();
}

SatelliteGroupLoad loadOf(SatelliteCatalog::Group const& group, SatelliteGroupLoad::Source source,
                          std::string_view body, Instant fetched, std::string failure = {}) {
  return {group, source, fetched, SatelliteCatalog::parse(body, group), std::move(failure)};
}

}  // namespace

SatelliteFeed::SatelliteFeed(HttpClient& http, Clock const& clock, std::string baseUrl,
                             std::filesystem::path folder)
    : http_(http), clock_(clock), baseUrl_(std::move(baseUrl)), folder_(std::move(folder)) {}

Result<SatelliteGroupLoad, std::string> SatelliteFeed::load(SatelliteCatalog::Group const& group,
                                                            std::stop_token const& stop) {
  using Source = SatelliteGroupLoad::Source;
  std::lock_guard const lock(turn_);
  Instant const now = clock_.now();
  auto const old = kept(group);
  if (old && isFresh(old->fetched, now)) return loadOf(group, Source::file, old->body, old->fetched);
  auto body = ask(group, stop);
  if (body) {
    keep(group, *body);
    return loadOf(group, Source::server, *body, now);
  }
  if (!old) return std::unexpected(std::move(body.error()));
  return loadOf(group, Source::staleFile, old->body, old->fetched, std::move(body.error()));
}

Result<std::string, std::string> SatelliteFeed::ask(SatelliteCatalog::Group const& group,
                                                    std::stop_token const& stop) {
  std::string const what = "the satellites of the group " + std::string(group.id) + " cannot be had: ";
  Instant const now = clock_.now();
  if (auto const pause = notBefore_.find(group.id); pause != notBefore_.end() && now < pause->second) {
    return std::unexpected(what + "the server is left alone until " + formatIso8601(pause->second));
  }
  HttpRequest request;
  request.url = baseUrl_ + "/api/feed.php?f=satellites&p=" + percentEncoded(group.id);
  request.maxBodyBytes = kLargestText;
  auto answer = http_.get(request, stop);
  if (answer && answer->status == 200 && isElements(answer->body)) return std::move(answer->body);
  if (stop.stop_requested()) return std::unexpected(what + "interrupted");
  bool const refused = answer && answer->status == kRefused;
  notBefore_[std::string(group.id)] =
      now + (refused ? Instant::duration(kPauseAfterRefusal) : Instant::duration(kPauseAfterFailure));
  if (!answer) return std::unexpected(what + answer.error().message);
  if (answer->status != 200)
    return std::unexpected(what + "the server answered " + std::to_string(answer->status));
  return std::unexpected(what + "the answer holds no element sets");
}

std::filesystem::path SatelliteFeed::fileOf(SatelliteCatalog::Group const& group) const {
  return folder_ / (std::string(group.id) + ".txt");
}

std::optional<SatelliteFeed::Text> SatelliteFeed::kept(SatelliteCatalog::Group const& group) const {
  if (folder_.empty()) return std::nullopt;
  std::error_code error;
  auto const written = std::filesystem::last_write_time(fileOf(group), error);
  if (error) return std::nullopt;
  auto body = readFile(fileOf(group), kLargestText);
  if (!body || !isElements(*body)) return std::nullopt;
  auto const fetched = std::chrono::floor<Instant::duration>(std::chrono::file_clock::to_sys(written));
  return Text{std::move(*body), fetched};
}

void SatelliteFeed::keep(SatelliteCatalog::Group const& group, std::string_view body) const {
  if (folder_.empty() || !writeFileAtomically(fileOf(group), body)) return;
  // The file's date is the answer's, by the clock of this run.
  std::error_code ignored;
  std::filesystem::last_write_time(fileOf(group), std::chrono::file_clock::from_sys(clock_.now()), ignored);
}

}  // namespace nimbara
