// Pictures of suppliers from bytes that anybody may have made: PNG and WebP by the toolkit's readers, one at
// a time, within limits of size and memory. Any thread may ask.
#pragma once

#include <QImage>
#include <optional>
#include <string_view>

namespace nimbara {

inline constexpr int kLargestPictureSide = 2048;

/// With 32 bits and alpha for each pixel; nothing for what is no picture, or none of those kinds, or larger.
std::optional<QImage> decodePicture(std::string_view bytes);

bool isWhollyTransparent(QImage const& picture);
/// All pixels are alike, transparent or not.
bool isOneColour(QImage const& picture);
/// More of what is drawn is opaque grey than coloured: it says something instead of showing rain.
bool isWriting(QImage const& picture);

}  // namespace nimbara
