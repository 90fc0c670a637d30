// Any bytes as a picture of a supplier, of the radar or of clouds.

#include "desktop/imagery/cloud_veil.h"
#include "desktop/imagery/picture_decoder.h"
#include "desktop/imagery/radar/radar_picture.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  auto const picture = decodePicture({reinterpret_cast<char const*>(data), size});
  if (!picture) return 0;
  if (picture->width() > kLargestPictureSide || picture->height() > kLargestPictureSide) std::abort();
  static_cast<void>(isOneColour(*picture) || isWhollyTransparent(*picture) || isWriting(*picture));
  if (auto const veil = cloudVeil({reinterpret_cast<char const*>(data), size}))
    static_cast<void>(cloudsOnMap(*veil, {{0.5, 0.4}, 3, 64, 48}));
  for (std::size_t i = 0; i < enumNames<RadarPalette>.size(); ++i) {
    std::vector<TilePicture> tiles{{{3, 4, 2}, *picture}};
    static_cast<void>(paintInOwnColours(tiles, static_cast<RadarPalette>(i)));
  }
  return 0;
}
