// Pictures that the stand-ins make: a palette's number for each point, as a PNG.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct DemoPicture {
  explicit DemoPicture(int widthToHave, int heightToHave)
      : width(widthToHave), height(heightToHave), points(static_cast<std::size_t>(width) * height) {}

  int width;
  int height;
  std::vector<std::uint8_t> points;    ///< row by row
  std::vector<std::uint32_t> palette;  ///< 0xRRGGBBAA, at most 256

  std::uint8_t& at(int x, int y) { return points[static_cast<std::size_t>(y) * width + x]; }
};

/// Nothing in it is compressed.
std::string pngOf(DemoPicture const& picture);

/// In capitals, a letter five points high for each `scale` of them; letters that it lacks are blanks.
void write(DemoPicture& picture, std::string_view text, int x, int y, int scale, std::uint8_t colour);

}  // namespace nimbara
