#include "landmarks.h"

#include <map>

namespace nimbara::gazetteer {

namespace {

struct Candidate {
  LandmarkRecord record;
  SpherePoint point;
};

double closeness(SpherePoint const& a, SpherePoint const& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

/// Hart's condensed nearest neighbours: whatever the kept ones get wrong is kept, until nothing is wrong.
std::vector<LandmarkRecord> condensedCountry(std::vector<Candidate> rest) {
  std::vector<Candidate> kept;
  for (bool changed = true; changed;) {
    changed = false;
    std::vector<Candidate> answered;
    for (Candidate const& candidate : rest) {
      auto const nearest = std::ranges::max_element(
          kept, {}, [&](Candidate const& other) { return closeness(other.point, candidate.point); });
      bool const right = nearest != kept.end() && nearest->record.region == candidate.record.region;
      (right ? answered : kept).push_back(candidate);
      changed = changed || !right;
    }
    rest = std::move(answered);
  }
  std::vector<LandmarkRecord> records;
  records.reserve(kept.size());
  for (Candidate const& candidate : kept) records.push_back(candidate.record);
  return records;
}

}  // namespace

std::vector<LandmarkRecord> condensed(std::vector<LandmarkRecord> const& all) {
  std::map<std::uint16_t, std::vector<Candidate>> countries;
  for (LandmarkRecord const& record : all)
    countries[record.country].push_back({record, spherePoint(record.at)});
  std::vector<LandmarkRecord> kept;
  for (auto const& [country, candidates] : countries) {
    auto const few = condensedCountry(candidates);
    kept.insert(kept.end(), few.begin(), few.end());
  }
  return kept;
}

}  // namespace nimbara::gazetteer
