#include "demo/world/demo_picture.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

constexpr std::array<std::uint32_t, 256> kCrcTable = [] {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t i = 0; i < table.size(); ++i) {
    std::uint32_t c = i;
    for (int bit = 0; bit < 8; ++bit) c = (c & 1) != 0 ? 0xedb88320U ^ (c >> 1) : c >> 1;
    table[i] = c;
  }
  return table;
}();

void appendNumber(std::string& out, std::uint32_t number) {
  for (int shift = 24; shift >= 0; shift -= 8) out += static_cast<char>(number >> shift & 0xff);
}

void appendChunk(std::string& out, std::string_view kind, std::string_view content) {
  appendNumber(out, static_cast<std::uint32_t>(content.size()));
  std::string const body = std::string(kind) + std::string(content);
  std::uint32_t crc = 0xffffffffU;
  for (char const c : body) crc = kCrcTable[(crc ^ static_cast<unsigned char>(c)) & 0xff] ^ (crc >> 8);
  out += body;
  appendNumber(out, ~crc);
}

std::string deflated(std::string_view bytes) {
  constexpr std::size_t kBlock = 65535;
  std::string out = "\x78\x01";
  for (std::size_t at = 0; at < bytes.size() || at == 0; at += kBlock) {
    std::string_view const block = bytes.substr(at, kBlock);
    auto const size = static_cast<std::uint32_t>(block.size());
    out += at + kBlock >= bytes.size() ? '\x01' : '\x00';
    for (std::uint32_t const part : {size & 0xff, size >> 8, ~size & 0xff, ~size >> 8 & 0xff})
      out += static_cast<char>(part);
    out += block;
  }
  std::uint32_t a = 1, b = 0;
  constexpr std::uint32_t kAdler = 65521;
  for (char const c : bytes) {
    a = (a + static_cast<unsigned char>(c)) % kAdler;
    b = (b + a) % kAdler;
  }
  appendNumber(out, b << 16 | a);
  return out;
}

struct Glyph {
  char letter;
  std::uint16_t rows;  ///< five rows of three points, from the top
};

constexpr Glyph kGlyphs[] = {
    {'D', 0b110'101'101'101'110}, {'E', 0b111'100'110'100'111}, {'L', 0b100'100'100'100'111},
    {'M', 0b101'111'111'101'101}, {'N', 0b111'101'101'101'101}, {'O', 0b111'101'101'101'111},
    {'P', 0b111'101'111'100'100}, {'R', 0b110'101'110'101'101}, {'S', 0b111'100'111'001'111},
    {'T', 0b111'010'010'010'010}, {'U', 0b101'101'101'101'111}, {'V', 0b101'101'101'101'010},
    {'Z', 0b111'001'010'100'111},
};

}  // namespace

std::string pngOf(DemoPicture const& picture) {
  std::string out = "\x89PNG\r\n\x1a\n";
  std::string header;
  appendNumber(header, static_cast<std::uint32_t>(picture.width));
  appendNumber(header, static_cast<std::uint32_t>(picture.height));
  header += std::string("\x08\x03\x00\x00\x00", 5);  // eight bits each, by a palette
  appendChunk(out, "IHDR", header);
  std::string colours, alphas;
  for (std::uint32_t const colour : picture.palette) {
    for (int shift = 24; shift > 0; shift -= 8) colours += static_cast<char>(colour >> shift & 0xff);
    alphas += static_cast<char>(colour & 0xff);
  }
  appendChunk(out, "PLTE", colours);
  appendChunk(out, "tRNS", alphas);
  std::string rows;
  for (int y = 0; y < picture.height; ++y) {
    rows += '\0';  // no filter
    auto const* const row = picture.points.data() + static_cast<std::size_t>(y) * picture.width;
    rows.append(row, row + picture.width);
  }
  appendChunk(out, "IDAT", deflated(rows));
  appendChunk(out, "IEND", "");
  return out;
}

void write(DemoPicture& picture, std::string_view text, int x, int y, int scale, std::uint8_t colour) {
  constexpr int kWide = 3, kHigh = 5;
  for (char const letter : text) {
    auto const* const glyph = std::ranges::find(kGlyphs, letter, &Glyph::letter);
    for (int i = 0; glyph != std::end(kGlyphs) && i < kWide * kHigh * scale * scale; ++i) {
      int const right = i % (kWide * scale), down = i / (kWide * scale);
      bool const isSet =
          (glyph->rows >> (kWide * kHigh - 1 - (down / scale * kWide + right / scale)) & 1) != 0;
      bool const isInside = x + right < picture.width && y + down < picture.height;
      if (isSet && isInside) picture.at(x + right, y + down) = colour;
    }
    x += (kWide + 1) * scale;
  }
}

}  // namespace nimbara
