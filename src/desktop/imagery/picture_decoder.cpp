#include "desktop/imagery/picture_decoder.h"

#include <QBuffer>
#include <QImageReader>
#include <algorithm>
#include <mutex>

namespace nimbara {

namespace {

/// Of one picture, in the toolkit's megabytes.
constexpr int kMostMemory = 32;
constexpr std::size_t kMostBytes = std::size_t{8} << 20;

/// The kind by its first bytes, which decide alone: the toolkit would try all that it knows.
QByteArray kindOf(std::string_view bytes) {
  if (bytes.starts_with("\x89PNG")) return "png";
  bool const isWebP = bytes.size() > 12 && bytes.starts_with("RIFF") && bytes.substr(8, 4) == "WEBP";
  return isWebP ? "webp" : "";
}

QRgb const* lineOf(QImage const& picture, int y) {
  return reinterpret_cast<QRgb const*>(picture.constScanLine(y));
}

}  // namespace

std::optional<QImage> decodePicture(std::string_view bytes) {
  static std::mutex oneAtATime;
  QByteArray const kind = kindOf(bytes);
  if (kind.isEmpty() || bytes.size() > kMostBytes) return std::nullopt;
  std::lock_guard const lock(oneAtATime);
  QImageReader::setAllocationLimit(kMostMemory);
  QByteArray const data = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
  QBuffer buffer;
  buffer.setData(data);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer, kind);
  reader.setDecideFormatFromContent(false);
  QSize const size = reader.size();
  if (!size.isValid() || size.width() > kLargestPictureSide || size.height() > kLargestPictureSide)
    return std::nullopt;
  QImage picture = reader.read();
  if (picture.isNull() || picture.size() != size) return std::nullopt;
  return picture.convertToFormat(QImage::Format_ARGB32);
}

bool isWhollyTransparent(QImage const& picture) {
  for (int y = 0; y < picture.height(); ++y) {
    QRgb const* const line = lineOf(picture, y);
    if (std::any_of(line, line + picture.width(), [](QRgb pixel) { return qAlpha(pixel) != 0; }))
      return false;
  }
  return true;
}

bool isOneColour(QImage const& picture) {
  if (picture.isNull()) return true;
  QRgb const first = *lineOf(picture, 0);
  for (int y = 0; y < picture.height(); ++y) {
    QRgb const* const line = lineOf(picture, y);
    if (std::any_of(line, line + picture.width(), [first](QRgb pixel) { return pixel != first; }))
      return false;
  }
  return true;
}

bool isWriting(QImage const& picture) {
  constexpr int kOpaque = 250, kColourless = 12;
  long long grey = 0, coloured = 0;
  for (int y = 0; y < picture.height(); ++y) {
    QRgb const* const line = lineOf(picture, y);
    for (int x = 0; x < picture.width(); ++x) {
      auto const [least, most] = std::minmax({qRed(line[x]), qGreen(line[x]), qBlue(line[x])});
      if (qAlpha(line[x]) == 0) continue;
      bool const isGrey = qAlpha(line[x]) >= kOpaque && most - least <= kColourless;
      ++(isGrey ? grey : coloured);
    }
  }
  return grey > coloured;
}

}  // namespace nimbara
