#include "feeds/storms/jtwc.h"

#include "base/text/number.h"
#include "base/text/text.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

using std::chrono::hours;

constexpr double kKmInAMile = 1.852;
constexpr double kFastestKnots = 300;
constexpr int kFarthestHours = 240;
constexpr std::size_t kMostLines = 2000;
constexpr std::size_t kMostFiles = 40;
constexpr std::size_t kFileName = 6;

std::vector<std::string_view> words(std::string_view line) {
  std::vector<std::string_view> found = split(line, ' ');
  std::erase_if(found, [](std::string_view word) { return word.empty(); });
  return found;
}

bool isDigits(std::string_view text, std::size_t length) {
  return text.size() == length && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

int number(std::string_view digits) {
  return parseInteger(digits).value_or(0);
}

/// "2026092512" is 12:00 on 25 September 2026.
std::optional<Instant> hourOf(std::string_view text) {
  constexpr std::size_t kLength = 10;
  if (!isDigits(text, kLength)) return std::nullopt;
  Date const date{std::chrono::year(number(text.substr(0, 4))),
                  std::chrono::month(static_cast<unsigned>(number(text.substr(4, 2)))),
                  std::chrono::day(static_cast<unsigned>(number(text.substr(6, 2))))};
  int const hour = number(text.substr(8));
  if (!date.ok() || hour > 23) return std::nullopt;
  return Instant(std::chrono::sys_days(date)) + hours(hour);
}

/// "214N" and "1282E": tenths of a degree.
std::optional<double> tenthsOf(std::string_view text, char positive, char negative) {
  if (text.size() < 2) return std::nullopt;
  char const side = text.back();
  auto const tenths = text.substr(0, text.size() - 1);
  if (!isDigits(tenths, tenths.size()) || (side != positive && side != negative)) return std::nullopt;
  return (side == positive ? 0.1 : -0.1) * number(tenths);
}

std::optional<Coordinate> positionOf(std::string_view latitude, std::string_view longitude) {
  auto const north = tenthsOf(latitude, 'N', 'S');
  auto const east = tenthsOf(longitude, 'E', 'W');
  if (!north || !east || !isValid({*north, *east})) return std::nullopt;
  return Coordinate{*north, *east};
}

std::optional<double> windOf(std::string_view knots) {
  auto const value = parseDouble(knots);
  return value && *value >= 0 && *value <= kFastestKnots ? std::optional(*value * kMsInAKnot) : std::nullopt;
}

/// The largest of the four quarters that follow "R034".
std::optional<double> galeRadiusOf(std::vector<std::string_view> const& row) {
  auto const begin = std::ranges::find(row, "R034");
  if (begin == row.end()) return std::nullopt;
  std::optional<double> largest;
  for (auto word = begin + 1; word != row.end() && !word->starts_with('R'); ++word) {
    if (!isDigits(*word, 3)) continue;
    double const km = number(*word) * kKmInAMile;
    if (!largest || km > *largest) largest = km;
  }
  return largest;
}

/// "T012 225N 1272E 060 R050 …".
std::optional<TropicalTrackPoint> forecastPoint(std::vector<std::string_view> const& row, Instant begin) {
  bool const isPoint = row.size() >= 4 && row[0].starts_with('T') && isDigits(row[0].substr(1), 3);
  if (!isPoint) return std::nullopt;
  int const ahead = number(row[0].substr(1));
  auto const position = positionOf(row[1], row[2]);
  if (!position || ahead > kFarthestHours) return std::nullopt;
  return TropicalTrackPoint{begin + hours(ahead), *position, windOf(row[3]), galeRadiusOf(row)};
}

/// "2526092512 214N1282E  50": the storm's number, the hour with a year of two digits, position and knots.
std::optional<TropicalTrackPoint> pastPoint(std::vector<std::string_view> const& row) {
  if (row.size() < 2 || !isDigits(row[0], 10)) return std::nullopt;
  auto const time = hourOf("20" + std::string(row[0].substr(2)));
  std::size_t const middle = row[1].find_first_of("NS");
  if (!time || middle == std::string_view::npos) return std::nullopt;
  auto const position = positionOf(row[1].substr(0, middle + 1), row[1].substr(middle + 1));
  if (!position) return std::nullopt;
  return TropicalTrackPoint{*time, *position, row.size() > 2 ? windOf(row[2]) : std::nullopt, {}};
}

/// "Surigae" for "SURIGAE".
std::string nameOf(std::string const& capitals) {
  std::string name = asciiLowered(capitals);
  bool isFirst = true;
  for (char& letter : name) {
    if (isFirst && letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
    isFirst = letter == ' ' || letter == '-';
  }
  return name;
}

/// "2026092512 25W SURIGAE    010  01 305 12 SATL 060": the name ends before the warning's number.
bool readHeader(std::vector<std::string_view> const& row, TropicalStorm& storm) {
  auto const time = row.size() >= 7 ? hourOf(row[0]) : std::nullopt;
  if (!time) return false;
  std::size_t at = 3;
  while (at + 1 < row.size() && !(isDigits(row[at], 3) && isDigits(row[at + 1], 2))) ++at;
  if (at + 3 >= row.size()) return false;
  std::string name;
  for (std::size_t i = 2; i < at; ++i) name += (name.empty() ? "" : " ") + std::string(row[i]);
  storm.name = oneLine(nameOf(name), 60);
  storm.lastUpdate = *time;
  auto const direction = parseDouble(row[at + 2]);
  if (direction && *direction >= 0 && *direction <= 360) storm.movementDirection = direction;
  storm.movementMs = windOf(row[at + 3]);
  return true;
}

bool isFile(std::string_view text) {
  bool const isBasin = text.starts_with("wp") || text.starts_with("io") || text.starts_with("sh");
  return text.size() == kFileName && isBasin && isDigits(text.substr(2), 4);
}

std::string_view classOf(double knots, TropicalBasin basin) {
  if (knots < 34) return "TD";
  if (knots < 64) return "TS";
  return basin == TropicalBasin::westernPacific ? "TY" : "TC";
}

}  // namespace

Result<std::vector<std::string>, DecodeError> parseJtwcList(std::string_view body) {
  constexpr std::string_view kFolder = "products/";
  bool const isList = body.find("<rss") != std::string_view::npos;
  // A list that was cut off would look like fewer storms.
  if (!isList || body.find("</rss>") == std::string_view::npos) {
    return std::unexpected(DecodeError{"", "it is not a whole list of warnings"});
  }
  std::vector<std::string> files;
  bool isAny = body.find("No Current Tropical Cyclone Warnings") != std::string_view::npos;
  for (auto at = body.find(kFolder); at != std::string_view::npos && files.size() < kMostFiles;
       at = body.find(kFolder, at + 1)) {
    std::string_view const name = body.substr(at + kFolder.size());
    if (name.substr(std::min(kFileName, name.size()), 4) != ".tcw") continue;
    isAny = true;
    std::string file(name.substr(0, kFileName));
    if (isFile(file) && std::ranges::find(files, file) == files.end()) files.push_back(std::move(file));
  }
  if (!isAny) return std::unexpected(DecodeError{"", "it names neither warnings nor that there are none"});
  return files;
}

Result<TropicalStorm, DecodeError> parseJtwcWarning(std::string_view body, std::string_view file) {
  if (!isFile(file)) return std::unexpected(DecodeError{"", "it has no name of a warning"});
  TropicalStorm storm;
  storm.id = std::string(file.substr(0, 4)) + "20" + std::string(file.substr(4));
  storm.basin = basinOfStorm(storm.id).value_or(TropicalBasin::westernPacific);
  storm.centre = StormCentre::jtwc;
  bool hasHeader = false;
  bool isPast = false;
  auto lines = split(body, '\n');
  if (lines.size() > kMostLines) lines.resize(kMostLines);
  for (std::string_view const line : lines) {
    auto const row = words(trimmed(line));
    if (row.empty()) continue;
    if (row[0] == "//") isPast = true;
    if (!hasHeader && !isPast) {
      hasHeader = readHeader(row, storm);
    } else if (!isPast) {
      if (auto const point = forecastPoint(row, *storm.lastUpdate)) storm.track.push_back(*point);
    } else if (auto const point = pastPoint(row)) {
      storm.past.push_back(*point);
    }
  }
  bool const isWhole = hasHeader && !storm.track.empty() && storm.track.front().time == storm.lastUpdate &&
                       storm.track.front().windMs;
  if (!isWhole) return std::unexpected(DecodeError{"", "it has no present position"});
  TropicalTrackPoint const& now = storm.track.front();
  storm.coordinate = now.coordinate;
  storm.windMs = *now.windMs;
  storm.galeRadiusKm = now.galeRadiusKm;
  double const knots = storm.windMs / kMsInAKnot;
  storm.category = stormCategory(std::round(knots));
  storm.classification = classOf(std::round(knots), storm.basin);
  return storm;
}

}  // namespace nimbara
