#include "feeds/cap/warning_shape.h"

#include "base/text/text.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>

namespace nimbara {

namespace {

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

/// Reads numbers and separators from the front of a text.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(trimmed(text)) {}

  bool atEnd() const { return rest_.empty(); }

  std::optional<double> number() {
    double value = 0;
    if (rest_.starts_with('+')) rest_.remove_prefix(1);
    auto const [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
    if (error != std::errc{} || !std::isfinite(value)) return std::nullopt;
    rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
    return value;
  }

  std::optional<Coordinate> pair() {
    auto const latitude = number();
    if (!latitude || !rest_.starts_with(',')) return std::nullopt;
    rest_.remove_prefix(1);
    skipBlanks();
    auto const longitude = number();
    if (!longitude || !isValid({*latitude, *longitude})) return std::nullopt;
    return Coordinate{*latitude, *longitude};
  }

  /// Whether there was at least one blank, or nothing more.
  bool skipBlanks() {
    std::size_t count = 0;
    while (count < rest_.size() && isBlank(rest_[count])) ++count;
    bool const separated = count > 0 || rest_.empty();
    rest_.remove_prefix(count);
    return separated;
  }

 private:
  std::string_view rest_;
};

}  // namespace

std::optional<WarningPolygon> parseWarningPolygon(std::string_view text) {
  constexpr std::size_t kFewestCorners = 3;
  constexpr std::size_t kUsualPairLength = 20;
  Scanner scanner(text);
  WarningPolygon polygon;
  polygon.reserve(text.size() / kUsualPairLength + 1);
  while (!scanner.atEnd()) {
    auto const corner = scanner.pair();
    if (!corner || !scanner.skipBlanks()) return std::nullopt;
    polygon.push_back(*corner);
  }
  if (polygon.size() < kFewestCorners) return std::nullopt;
  return polygon;
}

std::optional<WarningCircle> parseWarningCircle(std::string_view text) {
  Scanner scanner(text);
  auto const center = scanner.pair();
  if (!center || !scanner.skipBlanks()) return std::nullopt;
  auto const radius = scanner.number();
  if (!radius || *radius < 0 || !scanner.atEnd()) return std::nullopt;
  return WarningCircle{*center, *radius};
}

std::string shapeText(WarningPolygon const& polygon) {
  std::string text;
  for (Coordinate const& corner : polygon) {
    fmt::format_to(std::back_inserter(text), "{}{},{}", text.empty() ? "" : " ", corner.latitude,
                   corner.longitude);
  }
  return text;
}

std::string shapeText(WarningCircle const& circle) {
  return fmt::format("{},{} {}", circle.center.latitude, circle.center.longitude, circle.radiusKm);
}

}  // namespace nimbara
