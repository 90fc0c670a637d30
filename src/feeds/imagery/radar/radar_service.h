// Whose radar a map shows: of the suppliers that may have the place, the first whose list can be read. Keeps
// each supplier's last list in memory, and never raises an error.
#pragma once

#include "feeds/imagery/imagery_requests.h"
#include "feeds/imagery/radar/radar_lists.h"

#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace nimbara {

class RadarService {
 public:
  static constexpr std::chrono::minutes kRest{5};
  static constexpr std::chrono::minutes kRestAfterFailure{15};
  static constexpr std::chrono::minutes kRestWithoutNetwork{1};
  static constexpr std::chrono::hours kCoverageLife{24};

  /// The address of each supplier's service, in the suppliers' order.
  using Bases = std::map<RadarSource, std::string>;

  RadarService(ImageryRequests& requests, Clock const& clock, Bases bases);

  /// Blocks for the lists that are due. Any thread; one question at a time.
  RadarReading frames(Coordinate centre, std::stop_token const& stop = {});
  /// The same for a map, without those that have no radar in any of it.
  RadarReading frames(MapView const& view, std::set<RadarSource> const& without,
                      std::stop_token const& stop = {});

  /// Its pictures cannot be had or show nothing that can be used: for a while it is not asked for any place.
  void refuse(RadarSource source, ServiceFailure failure);
  /// It has no radar there, as its own tile says.
  void noteUncovered(RadarSource source, Coordinate place);

 private:
  struct Kept {
    std::optional<FrameList> list;
    Instant checkedAt;
    std::optional<ServiceFailure> failure;
    std::optional<std::chrono::steady_clock::time_point> pausedUntil;
  };
  using Cell = std::pair<int, int>;

  RadarReading firstOf(std::vector<RadarSource> const& sources, std::stop_token const& stop);
  Kept const& ask(RadarSupplier const& supplier, std::stop_token const& stop);
  Result<FrameList, ServiceFailure> fetch(RadarSupplier const& supplier, std::stop_token const& stop);
  void pause(Kept& kept, ServiceFailure failure);
  bool isUncovered(RadarSource source, Coordinate place);

  ImageryRequests& requests_;
  Clock const& clock_;
  Bases bases_;
  std::mutex turn_;  // of who asks; guards the two below
  std::map<RadarSource, Kept> kept_;
  std::map<std::pair<RadarSource, Cell>, Instant> uncovered_;
};

}  // namespace nimbara
