#include "cli/commands/satellites/satellite_source.h"

#include "app/services/feed_services.h"
#include "base/text/text.h"
#include "cli/slow_note.h"

namespace nimbara {

namespace {

template <class T>
using Outcome = Result<T, Failure>;

/// What a test server made up is kept apart.
std::filesystem::path folderOf(CommonOptions const& common, Session const& session) {
  auto const& cache = session.environment.cacheDirectory;
  if (cache.empty()) return {};
  return cache / (common.services.empty() ? "satellites" : "satellites.stand-in");
}

Outcome<std::vector<SatelliteCatalog::Group>> groupsOf(std::vector<std::string> const& ids) {
  auto const all = SatelliteCatalog::groups();
  if (ids.empty()) return std::vector(all.begin(), all.end());
  std::vector<SatelliteCatalog::Group> groups;
  groups.reserve(ids.size());
  for (std::string const& id : ids) {
    auto const* const group = SatelliteCatalog::group(id);
    if (group == nullptr) {
      std::string known;
      for (auto const& each : all) known += (known.empty() ? "" : ", ") + std::string(each.id);
      return std::unexpected(
          Failure{exitCode::kUsage, "'" + oneLine(id) + "' is not a group; choose from " + known, {}});
    }
    bool const isNew = std::ranges::find(groups, group->id, &SatelliteCatalog::Group::id) == groups.end();
    if (isNew) groups.push_back(*group);
  }
  return groups;
}

/// How well an entry answers to a name: numbers and whole names before names' beginnings, those before their
/// parts; nothing when it does not.
std::optional<int> rankOf(SatelliteCatalog::Entry const& entry, std::string_view wanted,
                          std::string_view lowered) {
  std::string const name = asciiLowered(entry.name);
  if (name == lowered || std::to_string(entry.satrec.tle.satnum) == wanted) return 0;
  auto const at = name.find(lowered);
  if (at == std::string::npos) return std::nullopt;
  return at == 0 ? 1 : 2;
}

SatelliteCatalog::Entry* bestOf(std::vector<SatelliteCatalog::Entry>& entries, std::string_view wanted) {
  std::string const lowered = asciiLowered(wanted);
  SatelliteCatalog::Entry* best = nullptr;
  int bestRank = 3;
  for (auto& entry : entries) {
    auto const rank = rankOf(entry, wanted, lowered);
    if (!rank || *rank >= bestRank) continue;
    best = &entry;
    bestRank = *rank;
  }
  return best;
}

}  // namespace

SatelliteSource::SatelliteSource(CommandLine const& line, Session const& session)
    : session_(session),
      clock_(makeClock(line.common)),
      context_(line.common, session, *clock_,
               ownServicesWithin(kCommandLimit, line.common, line.forecast.provider)),
      feed_(context_.app().feeds().elements(), *clock_, folderOf(line.common, session)) {}

Result<SatelliteGroupLoad, ServiceFailure> SatelliteSource::fetched(SatelliteCatalog::Group const& group) {
  SlowNote const note(session_, "fetching the orbits of the group " + std::string(group.id) + " …");
  return feed_.load(group, session_.stop);
}

Outcome<SatelliteGroupLoad> SatelliteSource::load(SatelliteCatalog::Group const& group) {
  auto loaded = fetched(group);
  std::string const what = "the satellites of the group " + std::string(group.id) + " could not be fetched: ";
  if (!loaded)
    return std::unexpected(Failure{exitCode::kUnavailable, what + context_.advised(loaded.error()), {}});
  if (loaded->failure) {
    context_.tell(what + context_.plain(*loaded->failure) + "; using the orbits from " +
                  context_.moment(loaded->fetched));
  }
  if (loaded->parsed.dropped > 0) {
    context_.tell(std::to_string(loaded->parsed.dropped) + " records of the group " + std::string(group.id) +
                  " could not be used");
  }
  return std::move(*loaded);
}

Outcome<std::vector<SatelliteGroupLoad>> SatelliteSource::load(std::vector<std::string> const& groupIDs) {
  auto const groups = groupsOf(groupIDs);
  if (!groups) return std::unexpected(groups.error());
  std::vector<SatelliteGroupLoad> loads;
  loads.reserve(groups->size());
  std::optional<Failure> failure;
  for (auto const& group : *groups) {
    auto loaded = load(group);
    if (loaded) {
      loads.push_back(std::move(*loaded));
      continue;
    }
    // The last failure may be the command's own, which says it.
    if (failure) context_.tell(failure->sentence);
    failure = loaded.error();
    if (session_.stop.stop_requested()) break;
  }
  if (loads.empty() && failure) return std::unexpected(*failure);
  if (failure) context_.tell(failure->sentence);
  return loads;
}

Outcome<FoundSatellite> SatelliteSource::find(std::string_view wanted) {
  wanted = trimmed(wanted);
  std::optional<Failure> failure;
  for (auto const& group : SatelliteCatalog::groups()) {
    if (wanted.empty() || session_.stop.stop_requested()) break;
    auto loaded = load(group);
    if (!loaded) {
      // Those that follow, most of them debris, fail for the same reason.
      if (!failure) failure = loaded.error();
      continue;
    }
    auto* const best = bestOf(loaded->parsed.entries, wanted);
    if (best != nullptr) return FoundSatellite{std::move(*best), std::string(group.id)};
  }
  if (failure) return std::unexpected(*failure);
  return std::unexpected(
      Failure{exitCode::kUnavailable,
              "no satellite found for '" + oneLine(wanted) + "'; see nimbara satellites list",
              {}});
}

}  // namespace nimbara
