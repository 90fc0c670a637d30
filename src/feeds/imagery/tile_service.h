// The bytes of pictures of maps, from the disk or from their suppliers. Owned by the feeds; keeps no picture
// in memory and looks into none. Any thread may ask.
#pragma once

#include "base/result.h"
#include "feeds/imagery/imagery_requests.h"
#include "feeds/imagery/radar/radar_frames.h"
#include "feeds/imagery/tile_cache.h"

#include <stop_token>
#include <string>

namespace nimbara {

class TileService {
 public:
  static constexpr std::size_t kLargestPicture = std::size_t{5} << 20;

  /// `folder` empty: nothing is kept on disk.
  TileService(ImageryRequests& requests, Clock const& clock, std::filesystem::path folder);

  /// One of the supplier's own tiles (`servedBy`). 404 is a failure that says there is none; `leftAlone` that
  /// it may be asked for later.
  Result<std::string, ServiceFailure> picture(RadarReading const& reading, RadarFrame const& frame,
                                              TileAddress tile, std::stop_token const& stop = {});
  /// One of `picturesWanted`.
  Result<std::string, ServiceFailure> picture(RadarReading const& reading, RadarFrame const& frame,
                                              PictureArea const& area, std::stop_token const& stop = {});
  /// Where the supplier of a reading has no radar, which is kept for a day.
  Result<std::string, ServiceFailure> coverage(RadarReading const& reading, TileAddress tile,
                                               std::stop_token const& stop = {});
  /// Any picture; `key` names what it shows.
  Result<std::string, ServiceFailure> picture(std::string const& address, std::string const& key,
                                              std::stop_token const& stop = {});

 private:
  ImageryRequests& requests_;
  Clock const& clock_;
  TileCache cache_;
};

/// What a picture of a frame is kept under.
std::string tileKey(RadarReading const& reading, RadarFrame const& frame, PictureArea const& area);

}  // namespace nimbara
