#include "desktop/imagery/cloud_veil.h"

#include "desktop/imagery/picture_decoder.h"
#include "feeds/imagery/cloud_service.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace nimbara {

namespace {

constexpr int kShades = 256;
/// Most of the earth's surface is warmer than clouds: shades up to the middle one are ground and sea, and the
/// brightest hundredth is the tops of storms.
constexpr double kGround = 0.5, kTops = 0.99;
constexpr int kThickest = 235;

using Shades = std::array<long long, kShades>;

QRgb const* lineOf(QImage const& picture, int y) {
  return reinterpret_cast<QRgb const*>(picture.constScanLine(y));
}

Shades shadesOf(QImage const& picture) {
  Shades count{};
  for (int y = 0; y < picture.height(); ++y) {
    QRgb const* const line = lineOf(picture, y);
    for (int x = 0; x < picture.width(); ++x) {
      if (qAlpha(line[x]) != 0) ++count[static_cast<std::size_t>(qGray(line[x]))];
    }
  }
  return count;
}

/// The shade below which that part of all points lies.
int shadeAt(Shades const& count, double part) {
  long long all = 0;
  for (long long const of : count) all += of;
  auto const wanted = static_cast<long long>(part * static_cast<double>(all));
  long long below = 0;
  for (int shade = 0; shade < kShades; ++shade) {
    below += count[static_cast<std::size_t>(shade)];
    if (below > wanted) return shade;
  }
  return kShades - 1;
}

std::array<uchar, kShades> opacities(Shades const& count) {
  double const from = shadeAt(count, kGround);
  double const to = std::max<double>(shadeAt(count, kTops), from + 1);
  std::array<uchar, kShades> opacity{};
  for (int shade = 0; shade < kShades; ++shade) {
    double const part = std::clamp((shade - from) / (to - from), 0.0, 1.0);
    opacity[static_cast<std::size_t>(shade)] = static_cast<uchar>(std::lround(kThickest * part));
  }
  return opacity;
}

/// Points of the veil from its north-western corner.
struct VeilPoint {
  double x, y;
};
VeilPoint pointOf(QImage const& veil, Coordinate place) {
  return {(place.longitude + 180) / 360 * veil.width() - 0.5,
          (CloudPicture::kLimit - place.latitude) / (2 * CloudPicture::kLimit) * veil.height() - 0.5};
}

/// Between four points; around the world in x.
int shadeBetween(QImage const& veil, VeilPoint at) {
  int const width = veil.width(), lowest = veil.height() - 1;
  double const left = std::floor(at.x), top = std::floor(at.y);
  int const x0 = ((static_cast<int>(left) % width) + width) % width, x1 = (x0 + 1) % width;
  int const y0 = std::clamp(static_cast<int>(top), 0, lowest),
            y1 = std::clamp(static_cast<int>(top) + 1, 0, lowest);
  double const right = at.x - left, down = at.y - top;
  uchar const* const upper = veil.constScanLine(y0);
  uchar const* const lower = veil.constScanLine(y1);
  double const above = upper[x0] + (upper[x1] - upper[x0]) * right;
  double const below = lower[x0] + (lower[x1] - lower[x0]) * right;
  return static_cast<int>(std::lround(above + (below - above) * down));
}

}  // namespace

std::optional<QImage> cloudVeil(std::string_view bytes) {
  auto const picture = decodePicture(bytes);
  if (!picture || isOneColour(*picture) || isWhollyTransparent(*picture)) return std::nullopt;
  auto const opacity = opacities(shadesOf(*picture));
  QImage veil(picture->size(), QImage::Format_Grayscale8);
  for (int y = 0; y < veil.height(); ++y) {
    QRgb const* const from = lineOf(*picture, y);
    uchar* const to = veil.scanLine(y);
    for (int x = 0; x < veil.width(); ++x) {
      int const thick = opacity[static_cast<std::size_t>(qGray(from[x]))];
      to[x] = static_cast<uchar>(thick * qAlpha(from[x]) / 255);
    }
  }
  return veil;
}

int cloudsAt(QImage const& veil, Coordinate place) {
  if (veil.isNull() || std::abs(place.latitude) > CloudPicture::kLimit) return 0;
  return shadeBetween(veil, pointOf(veil, place));
}

QImage underClouds(QImage earth, QImage const& veil) {
  for (int y = 0; y < earth.height(); ++y) {
    double const latitude = 90 - 180 * (y + 0.5) / earth.height();
    if (std::abs(latitude) > CloudPicture::kLimit) continue;
    uchar* texel = earth.scanLine(y);
    for (int x = 0; x < earth.width(); ++x, texel += 4) {
      int const thick = cloudsAt(veil, {latitude, 360 * (x + 0.5) / earth.width() - 180});
      for (int channel = 0; channel < 3; ++channel)
        texel[channel] = static_cast<uchar>(texel[channel] + (255 - texel[channel]) * thick / 255);
      texel[3] = static_cast<uchar>(texel[3] * (255 - thick) / 255);
    }
  }
  return earth;
}

QImage cloudsOnMap(QImage const& veil, MapView const& view) {
  QImage picture(view.width, view.height, QImage::Format_ARGB32_Premultiplied);
  picture.fill(Qt::transparent);
  for (int y = 0; y < view.height; ++y) {
    auto* const line = reinterpret_cast<QRgb*>(picture.scanLine(y));
    double const latitude = coordinateOf(pointAt(view, {0, y + 0.5})).latitude;
    if (std::abs(latitude) > CloudPicture::kLimit) continue;
    for (int x = 0; x < view.width; ++x) {
      double const longitude = 360 * pointAt(view, {x + 0.5, y + 0.5}).x - 180;
      int const thick = cloudsAt(veil, {latitude, longitude});
      line[x] = qRgba(thick, thick, thick, thick);
    }
  }
  return picture;
}

}  // namespace nimbara
