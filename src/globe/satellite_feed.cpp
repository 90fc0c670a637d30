#include "globe/satellite_feed.h"

#include "base/files/file.h"

namespace nimbara {

namespace {

constexpr std::size_t kLargestText = std::size_t{16} << 20;

bool isFresh(Instant fetched, Instant now) {
  return fetched <= now && now - fetched < SatelliteFeed::kFreshFor;
}

/// Pages, messages and nothing at all are none.
bool isElements(std::string_view body) {
  return !SGP4::readElements(body).elements.empty();
}

SatelliteGroupLoad loadOf(SatelliteCatalog::Group const& group, SatelliteGroupLoad::Source source,
                          ElementSets const& sets, std::optional<ServiceFailure> failure = {}) {
  return {group, source, sets.fetched, SatelliteCatalog::parse(sets.text, group), std::move(failure)};
}

}  // namespace

SatelliteFeed::SatelliteFeed(ElementSource source, Clock const& clock, std::filesystem::path folder)
    : source_(std::move(source)), clock_(clock), folder_(std::move(folder)) {}

Result<SatelliteGroupLoad, ServiceFailure> SatelliteFeed::load(SatelliteCatalog::Group const& group,
                                                               std::stop_token const& stop) {
  using Source = SatelliteGroupLoad::Source;
  std::lock_guard const lock(turn_);
  auto const old = kept(group);
  if (old && isFresh(old->fetched, clock_.now())) return loadOf(group, Source::file, *old);
  auto sets = ask(group, stop);
  if (sets) {
    keep(group, *sets);
    return loadOf(group, Source::server, *sets);
  }
  if (!old) return std::unexpected(std::move(sets.error()));
  return loadOf(group, Source::staleFile, *old, std::move(sets.error()));
}

Result<ElementSets, ServiceFailure> SatelliteFeed::ask(SatelliteCatalog::Group const& group,
                                                       std::stop_token const& stop) {
  auto sets = source_(group.id, stop);
  if (!sets || isElements(sets->text)) return sets;
  return std::unexpected(
      ServiceFailure::of(ServiceFailure::Kind::unreadable, "the response contains no element sets"));
}

std::filesystem::path SatelliteFeed::fileOf(SatelliteCatalog::Group const& group) const {
  return folder_ / (std::string(group.id) + ".txt");
}

std::optional<ElementSets> SatelliteFeed::kept(SatelliteCatalog::Group const& group) const {
  if (folder_.empty()) return std::nullopt;
  std::error_code error;
  auto const written = std::filesystem::last_write_time(fileOf(group), error);
  if (error) return std::nullopt;
  auto body = readFile(fileOf(group), kLargestText);
  if (!body || !isElements(*body)) return std::nullopt;
  auto const fetched = std::chrono::floor<Instant::duration>(std::chrono::file_clock::to_sys(written));
  return ElementSets{std::move(*body), fetched};
}

void SatelliteFeed::keep(SatelliteCatalog::Group const& group, ElementSets const& sets) const {
  if (folder_.empty() || !writeFileAtomically(fileOf(group), sets.text)) return;
  // The file's date is the answer's, by the clock of this run.
  std::error_code ignored;
  std::filesystem::last_write_time(fileOf(group), std::chrono::file_clock::from_sys(sets.fetched), ignored);
}

}  // namespace nimbara
