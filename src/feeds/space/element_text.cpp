#include "feeds/space/element_text.h"

#include "base/json/simdjson_dom.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "base/time/instant.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

namespace nimbara {

namespace {

enum Column {
  kName,
  kObjectId,
  kEpoch,
  kMeanMotion,
  kEccentricity,
  kInclination,
  kNode,
  kPerigee,
  kAnomaly,
  kType,
  kClass,
  kNumber,
  kSet,
  kRevolution,
  kDrag,
  kMotionDot,
  kMotionDotDot,
  kColumns
};

constexpr std::array<std::string_view, kColumns> kHeadings{
    "OBJECT_NAME",     "OBJECT_ID",           "EPOCH",
    "MEAN_MOTION",     "ECCENTRICITY",        "INCLINATION",
    "RA_OF_ASC_NODE",  "ARG_OF_PERICENTER",   "MEAN_ANOMALY",
    "EPHEMERIS_TYPE",  "CLASSIFICATION_TYPE", "NORAD_CAT_ID",
    "ELEMENT_SET_NO",  "REV_AT_EPOCH",        "BSTAR",
    "MEAN_MOTION_DOT", "MEAN_MOTION_DDOT"};

using Row = std::vector<std::string>;

/// Fields of one line; quotes may enclose one, doubled quotes stand for themselves.
Row fieldsOf(std::string_view line) {
  Row fields(1);
  bool quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    char const c = line[i];
    if (c == '"' && quoted && i + 1 < line.size() && line[i + 1] == '"') {
      fields.back() += line[++i];
    } else if (c == '"') {
      quoted = !quoted;
    } else if (c == ',' && !quoted) {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  return fields;
}

/// "20123.45678901" of "2020-05-02T10:57:46.512345", UTC.
std::optional<std::string> epochText(std::string_view text) {
  constexpr std::size_t kSeconds = std::string_view("2020-05-02T10:57:46").size();
  auto const whole = parseLocalTime(text.substr(0, kSeconds));
  if (!whole || text.size() < kSeconds) return std::nullopt;
  auto const fraction = text.size() == kSeconds ? 0.0 : parseDouble("0" + std::string(text.substr(kSeconds)));
  if (!fraction) return std::nullopt;
  constexpr double kUnitsADay = 1e8;
  auto day = std::chrono::floor<std::chrono::days>(*whole);
  double const seconds = static_cast<double>((*whole - day).count()) + *fraction;
  auto units = std::llround(seconds / 86400 * kUnitsADay);
  if (units >= static_cast<long long>(kUnitsADay)) {
    units = 0;
    day += std::chrono::days(1);
  }
  Date const date(day);
  if (date.year() < std::chrono::year(1957) || date.year() > std::chrono::year(2056)) return std::nullopt;
  int const ofYear = daysBetween(date.year() / std::chrono::January / 1, date) + 1;
  return fmt::format("{:02}{:03}.{:08}", static_cast<int>(date.year()) % 100, ofYear, units);
}

/// "98067A  " of "1998-067A"; blank when the object has none.
std::optional<std::string> designatorText(std::string_view text) {
  if (text.empty()) return std::string(8, ' ');
  bool const fits = text.size() >= 9 && text.size() <= 11 && text[4] == '-';
  if (!fits) return std::nullopt;
  return fmt::format("{:<8}", std::string(text.substr(2, 2)) + std::string(text.substr(5)));
}

std::optional<std::string> numberText(std::string_view text) {
  constexpr std::string_view kLetters = "ABCDEFGHJKLMNPQRSTUVWXYZ";
  constexpr int kPerLetter = 10000;
  auto const number = parseInteger(text);
  if (!number || *number < 0) return std::nullopt;
  if (*number < 10 * kPerLetter) return fmt::format("{:05}", *number);
  auto const letter = static_cast<std::size_t>(*number / kPerLetter - 10);
  if (letter >= kLetters.size()) return std::nullopt;
  return fmt::format("{}{:04}", kLetters[letter], *number % kPerLetter);
}

/// " .00012345": below 1, without the zero before the point.
std::optional<std::string> fractionText(std::string_view text) {
  auto const value = parseDouble(text);
  if (!value) return std::nullopt;
  std::string const digits = fmt::format("{:.8f}", std::abs(*value));
  if (!digits.starts_with("0.")) return std::nullopt;
  return (*value < 0 ? "-" : " ") + digits.substr(1);
}

/// " 12345-3": 0.12345 times ten to the power of -3.
std::optional<std::string> powerText(std::string_view text) {
  auto const value = parseDouble(text);
  if (!value) return std::nullopt;
  double const size = std::abs(*value);
  constexpr std::string_view kZero = " 00000+0";
  if (size < 1e-15) return std::string(kZero);
  int exponent = static_cast<int>(std::floor(std::log10(size))) + 1;
  auto mantissa = std::llround(size * std::pow(10, 5 - exponent));
  if (mantissa >= 100000) {
    mantissa /= 10;
    ++exponent;
  }
  if (exponent > 9) return std::nullopt;
  if (exponent < -9) return std::string(kZero);
  return fmt::format("{}{:05}{}{}", *value < 0 ? '-' : ' ', mantissa, exponent < 0 ? '-' : '+',
                     std::abs(exponent));
}

std::optional<double> within(std::string_view text, double lowest, double highest) {
  auto const value = parseDouble(text);
  return value && *value >= lowest && *value <= highest ? value : std::nullopt;
}

/// Counters of which only the last digits fit.
std::string counterText(std::string_view text, int width, int modulus) {
  return fmt::format("{:>{}}", std::max(0, parseInteger(text).value_or(0)) % modulus, width);
}

std::string withChecksum(std::string const& line) {
  int sum = 0;
  for (char const c : line) sum += c == '-' ? 1 : c >= '0' && c <= '9' ? c - '0' : 0;
  return line + std::to_string(sum % 10) + "\n";
}

char singleCharacter(std::string const& text, char otherwise) {
  return text.size() == 1 && text[0] > ' ' && text[0] < 127 ? text[0] : otherwise;
}

std::optional<std::string> firstLine(Row const& row, std::string const& number) {
  auto const designator = designatorText(row[kObjectId]);
  auto const epoch = epochText(row[kEpoch]);
  auto const dot = fractionText(row[kMotionDot]);
  auto const dotDot = powerText(row[kMotionDotDot]);
  auto const drag = powerText(row[kDrag]);
  if (!designator || !epoch || !dot || !dotDot || !drag) return std::nullopt;
  return withChecksum(fmt::format("1 {}{} {} {} {} {} {} {} {}", number, singleCharacter(row[kClass], 'U'),
                                  *designator, *epoch, *dot, *dotDot, *drag, singleCharacter(row[kType], '0'),
                                  counterText(row[kSet], 4, 10000)));
}

std::optional<std::string> secondLine(Row const& row, std::string const& number) {
  auto const inclination = within(row[kInclination], 0, 180);
  auto const node = within(row[kNode], 0, 360);
  auto const eccentricity = within(row[kEccentricity], 0, 0.99999994);
  auto const perigee = within(row[kPerigee], 0, 360);
  auto const anomaly = within(row[kAnomaly], 0, 360);
  auto const motion = within(row[kMeanMotion], 1e-4, 20);
  if (!inclination || !node || !eccentricity || !perigee || !anomaly || !motion) return std::nullopt;
  return withChecksum(fmt::format("2 {} {:8.4f} {:8.4f} {:07} {:8.4f} {:8.4f} {:11.8f}{}", number,
                                  *inclination, *node, std::llround(*eccentricity * 1e7), *perigee, *anomaly,
                                  *motion, counterText(row[kRevolution], 5, 100000)));
}

std::optional<std::string> linesOf(Row const& row) {
  auto const number = numberText(row[kNumber]);
  if (!number) return std::nullopt;
  auto const first = firstLine(row, *number);
  auto const second = secondLine(row, *number);
  if (!first || !second) return std::nullopt;
  std::string const name = oneLine(row[kName]);
  return (name.empty() ? "UNKNOWN" : name) + "\n" + *first + *second;
}

/// Where each of our columns stands; nothing when one is missing.
std::optional<std::array<std::size_t, kColumns>> positionsIn(Row const& heading) {
  std::array<std::size_t, kColumns> positions{};
  for (std::size_t column = 0; column < kColumns; ++column) {
    auto const found = std::ranges::find(heading, kHeadings[column]);
    if (found == heading.end()) return std::nullopt;
    positions[column] = static_cast<std::size_t>(found - heading.begin());
  }
  return positions;
}

void add(ElementText& out, std::optional<std::string> const& element) {
  element ? ++out.count : ++out.leftOut;
  out.text += element.value_or("");
}

std::optional<ElementText> fromTable(std::string_view table) {
  auto const lines = split(table, '\n');
  auto const positions = positionsIn(fieldsOf(trimmed(lines.front())));
  if (!positions) return std::nullopt;
  ElementText out;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    std::string_view const line = trimmed(lines[i]);
    if (line.empty()) continue;
    Row const fields = fieldsOf(line);
    Row row;
    for (std::size_t const position : *positions)
      row.emplace_back(position < fields.size() ? fields[position] : "");
    add(out, linesOf(row));
  }
  return out;
}

/// Numbers may be written as numbers or as texts.
std::string fieldOf(simdjson::dom::object object, std::string_view key) {
  simdjson::dom::element value;
  if (object[key].get(value) != simdjson::SUCCESS) return {};
  std::string_view text;
  std::int64_t whole = 0;
  double real = 0;
  if (value.get(text) == simdjson::SUCCESS) return std::string(text);
  if (value.get(whole) == simdjson::SUCCESS) return std::to_string(whole);
  return value.get(real) == simdjson::SUCCESS ? fmt::format("{}", real) : std::string();
}

std::optional<ElementText> fromObjects(std::string_view list) {
  simdjson::dom::parser parser;
  simdjson::dom::array objects;
  if (parser.parse(simdjson::padded_string(list)).get(objects) != simdjson::SUCCESS) return std::nullopt;
  ElementText out;
  for (simdjson::dom::element const each : objects) {
    simdjson::dom::object object;
    if (each.get(object) != simdjson::SUCCESS) return std::nullopt;
    Row row;
    for (std::string_view const heading : kHeadings) row.push_back(fieldOf(object, heading));
    add(out, linesOf(row));
  }
  return out;
}

constexpr std::size_t kLineLength = 69;

/// The first or second line of an element set, with the blank that stands behind its number and class.
bool isElementLine(std::string_view line, char number) {
  return line.size() >= kLineLength && line[0] == number && line[1] == ' ' &&
         line[number == '1' ? 8 : 7] == ' ';
}

/// The sets as they are, each with its name where it has one; what belongs to none is left out.
std::optional<ElementText> fromElementSets(std::string_view sets) {
  constexpr std::size_t kNumberAt = 2, kNumberLength = 5;
  std::vector<std::string_view> lines;
  for (std::string_view line : split(sets, '\n')) {
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.remove_suffix(1);
    if (!line.empty()) lines.push_back(line);
  }
  ElementText out;
  std::string_view name;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (!isElementLine(lines[i], '1')) {
      out.leftOut += isElementLine(lines[i], '2') ? 1 : 0;
      name = lines[i];
      continue;
    }
    bool const isWhole =
        i + 1 < lines.size() && isElementLine(lines[i + 1], '2') &&
        lines[i].substr(kNumberAt, kNumberLength) == lines[i + 1].substr(kNumberAt, kNumberLength);
    if (isWhole) {
      ++out.count;
      for (std::string_view const line : {name, lines[i], lines[i + 1]}) {
        if (!line.empty()) out.text += std::string(line) + "\n";
      }
      ++i;
    } else {
      ++out.leftOut;
    }
    name = {};
  }
  return out.count > 0 ? std::optional(std::move(out)) : std::nullopt;
}

}  // namespace

Result<ElementText, std::string> elementText(std::string_view document) {
  document = trimmed(document);
  auto elements = document.starts_with('[') ? fromObjects(document) : fromTable(document);
  if (!elements) elements = fromElementSets(document);
  if (!elements) return std::unexpected("the response is not a valid table of orbital elements");
  return std::move(*elements);
}

}  // namespace nimbara
