#include "globe/tle.h"

#include "base/text/clean_text.h"
#include "base/text/number.h"
#include "base/text/text.h"

#include <cmath>
#include <numbers>
#include <optional>

namespace nimbara::SGP4 {

namespace {

constexpr std::size_t kLineLength = 69;
/// Name lines are shorter than this, element lines longer, even cut ones that are worth a word.
constexpr std::size_t kLongerThanNames = 30;
constexpr double kRadians = std::numbers::pi / 180;
/// One radian per minute. Divided by, as the published implementation does: after years each bit counts.
constexpr double kTurnsPerDay = 1440 / (2 * std::numbers::pi);
constexpr double kUnixEpochJulianDate = 2440587.5;
/// Worth 10 to 33. I and O are left out, as they are taken for digits.
constexpr std::string_view kAlpha5 = "ABCDEFGHJKLMNPQRSTUVWXYZ";
constexpr int kLargestNumber = 339'999;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool allDigits(std::string_view text) {
  for (char const c : text) {
    if (!isDigit(c)) return false;
  }
  return !text.empty();
}

/// Columns as the format's description counts them, both included.
std::string_view columns(std::string_view line, std::size_t first, std::size_t last) {
  return line.substr(first - 1, last - first + 1);
}

/// "  .00000023", "-.00000084", " 34.2682": only signs, digits and one point.
std::optional<double> decimal(std::string_view text) {
  text = trimmed(text);
  if (text.find_first_not_of("+-.0123456789") != std::string_view::npos) return std::nullopt;
  bool const negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  std::string const digits = (text.starts_with('.') ? "0" : "") + std::string(text);
  auto const value = parseDouble(digits);
  if (!value || *value < 0) return std::nullopt;
  return negative ? -*value : *value;
}

/// Digits behind an unwritten point: "1859667" is 0.1859667.
std::optional<double> fraction(std::string_view text) {
  text = trimmed(text);
  return allDigits(text) ? parseDouble("0." + std::string(text)) : std::nullopt;
}

/// " 28098-4" is 0.28098e-4; blank is 0.
std::optional<double> exponential(std::string_view text) {
  text = trimmed(text);
  if (text.empty()) return 0.0;
  std::string sign;
  if (text.front() == '-' || text.front() == '+') {
    if (text.front() == '-') sign = "-";
    text.remove_prefix(1);
  }
  std::size_t const split = text.find_last_of("+-");
  if (split == std::string_view::npos || split + 2 != text.size()) return std::nullopt;
  std::string_view digits = text.substr(0, split);
  if (digits.starts_with('.')) digits.remove_prefix(1);
  if (!allDigits(digits) || !isDigit(text.back())) return std::nullopt;
  return parseDouble(sign + "0." + std::string(digits) + "e" + std::string(text.substr(split)));
}

struct Epoch {
  double day = 0;
  double fraction = 0;
};

/// "06176.82412014": the year's two digits, the day of the year counted from 1, its fraction.
std::optional<Epoch> readEpoch(std::string_view text) {
  auto const year = parseInteger(trimmed(text.substr(0, 2)));
  auto const day = parseInteger(trimmed(text.substr(2, 3)));
  if (!year || !day || text[5] != '.') return std::nullopt;
  auto const part = fraction(text.substr(6));
  if (*year < 0 || *day < 1 || *day > 366 || !part) return std::nullopt;
  int const fullYear = *year < 57 ? 2000 + *year : 1900 + *year;
  auto const newYear = std::chrono::sys_days{std::chrono::year{fullYear} / 1 / 1};
  auto const days = static_cast<double>(newYear.time_since_epoch().count() + *day - 1);
  return Epoch{kUnixEpochJulianDate + days, *part};
}

Instant instantOf(Epoch epoch) {
  double const milliseconds =
      (epoch.day - kUnixEpochJulianDate) * 86'400'000.0 + std::round(epoch.fraction * 86'400'000.0);
  return Instant(std::chrono::milliseconds(static_cast<std::int64_t>(milliseconds)));
}

/// Reads fields until one is wrong and remembers which.
class Fields {
 public:
  double value(std::optional<double> field, char const* what) {
    if (!field) fail(std::string("the ") + what + " cannot be read");
    return field.value_or(0);
  }
  double within(std::optional<double> field, double least, double most, char const* what) {
    double const number = value(field, what);
    if (number < least || number > most) fail(std::string("the ") + what + " is out of range");
    return number;
  }
  void fail(std::string reason) {
    if (reason_.empty()) reason_ = std::move(reason);
  }
  std::string const& reason() const { return reason_; }

 private:
  std::string reason_;
};

void readLine1(TLE& tle, std::string_view line, Fields& fields) {
  tle.intldesg = std::string(trimmed(columns(line, 10, 17)));
  if (auto const epoch = readEpoch(columns(line, 19, 32))) {
    tle.epochDay = epoch->day;
    tle.epochFraction = epoch->fraction;
    tle.epochJD = epoch->day + epoch->fraction;
    tle.epoch = instantOf(*epoch);
  } else {
    fields.fail("the epoch cannot be read");
  }
  auto const ndot = columns(line, 34, 43);
  tle.ndot = fields.value(trimmed(ndot).empty() ? 0.0 : decimal(ndot), "mean motion's change");
  tle.nddot = fields.value(exponential(columns(line, 45, 52)), "mean motion's second change");
  tle.bstar = fields.value(exponential(columns(line, 54, 61)), "drag term");
}

void readLine2(TLE& tle, std::string_view line, Fields& fields) {
  constexpr double kTurn = 360;
  tle.inclo = kRadians * fields.within(decimal(columns(line, 9, 16)), 0, kTurn / 2, "inclination");
  tle.nodeo = kRadians * fields.within(decimal(columns(line, 18, 25)), 0, kTurn, "ascending node");
  tle.ecco = fields.value(fraction(columns(line, 27, 33)), "eccentricity");
  tle.argpo = kRadians * fields.within(decimal(columns(line, 35, 42)), 0, kTurn, "argument of perigee");
  tle.mo = kRadians * fields.within(decimal(columns(line, 44, 51)), 0, kTurn, "mean anomaly");
  double const turns = fields.value(decimal(columns(line, 53, 63)), "mean motion");
  if (turns <= 0) fields.fail("the mean motion is not positive");
  tle.no_kozai = turns / kTurnsPerDay;
}

std::string checksumProblem(std::string_view line) {
  char const given = line[kLineLength - 1];
  int const sum = checksumOf(line);
  if (given == '0' + sum) return {};
  return std::string("the checksum of line ") + line.front() + " is " + oneLine({&given, 1}) +
         " instead of " + std::to_string(sum);
}

/// Why the two lines cannot even be looked into; empty when they can.
std::string shapeProblem(std::string_view line1, std::string_view line2) {
  for (auto const& [line, digit] : {std::pair{line1, '1'}, std::pair{line2, '2'}}) {
    if (line.size() < kLineLength) return std::string("line ") + digit + " is shorter than 69 columns";
    if (line[0] != digit || line[1] != ' ')
      return std::string("line ") + digit + " does not start with its number";
  }
  return {};
}

Result<int, std::string> commonNumber(std::string_view line1, std::string_view line2) {
  auto const first = readCatalogNumber(columns(line1, 3, 7));
  if (!first) return first;
  auto const second = readCatalogNumber(columns(line2, 3, 7));
  if (!second) return second;
  if (*first != *second) {
    return std::unexpected("the lines belong to different satellites, " + std::to_string(*first) + " and " +
                           std::to_string(*second));
  }
  return first;
}

/// The lines of a text that count, without their ends, and where they stand.
struct Line {
  std::string_view text;
  std::size_t number = 0;

  bool isElement(char digit) const {
    return text.size() > kLongerThanNames && text[0] == digit && text[1] == ' ';
  }
};

std::vector<Line> linesOf(std::string_view text) {
  std::vector<Line> lines;
  lines.reserve(text.size() / kLineLength + 1);
  std::size_t number = 0;
  while (!text.empty()) {
    std::size_t const end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    ++number;
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.remove_suffix(1);
    if (!line.empty() && line.front() != '#') lines.push_back({line, number});
  }
  return lines;
}

std::string_view nameIn(std::string_view line) {
  if (line == "0" || line.starts_with("0 ")) line.remove_prefix(1);
  return trimmed(line);
}

/// One pass over the lines, in step with pairs of element lines and with nothing else.
class Reader {
 public:
  Reader(std::string_view text, Checksums checksums) : lines_(linesOf(text)), checksums_(checksums) {}

  TLEDocument read() {
    while (next_ < lines_.size()) step();
    return std::move(document_);
  }

 private:
  void step() {
    Line const line = lines_[next_++];
    if (line.isElement('2')) return drop(line, "line 2 without a line 1");
    if (!line.isElement('1')) {
      name_ = nameIn(line.text);
      return;
    }
    if (next_ == lines_.size() || !lines_[next_].isElement('2')) {
      return drop(line, "line 1 without a line 2");
    }
    take(line, lines_[next_++]);
  }

  void take(Line const& line1, Line const& line2) {
    auto tle = readElementPair(name_, line1.text, line2.text, checksums_);
    if (!tle) return drop(line1, tle.error());
    if (checksums_ == Checksums::reported) reportChecksums(line1, line2);
    document_.elements.push_back(std::move(*tle));
    name_ = {};
  }

  void reportChecksums(Line const& line1, Line const& line2) {
    for (Line const* line : {&line1, &line2}) {
      if (auto problem = checksumProblem(line->text); !problem.empty()) {
        document_.problems.push_back({line->number, std::move(problem), false});
      }
    }
  }

  void drop(Line const& line, std::string reason) {
    document_.problems.push_back({line.number, std::move(reason), true});
    name_ = {};
  }

  std::vector<Line> lines_;
  Checksums checksums_;
  std::size_t next_ = 0;
  std::string_view name_;
  TLEDocument document_;
};

}  // namespace

Result<int, std::string> readCatalogNumber(std::string_view columns) {
  std::string_view digits = columns;
  while (digits.starts_with(' ')) digits.remove_prefix(1);
  int leading = 0;
  if (digits.size() == 5 && !isDigit(digits.front())) {
    auto const letter = kAlpha5.find(digits.front());
    if (letter == std::string_view::npos) return std::unexpected("the catalogue number cannot be read");
    leading = (static_cast<int>(letter) + 10) * 10'000;
    digits.remove_prefix(1);
  }
  if (columns.size() != 5 || !allDigits(digits)) {
    return std::unexpected("the catalogue number cannot be read");
  }
  return leading + parseInteger(digits).value_or(0);
}

Result<std::string, std::string> writeCatalogNumber(int number) {
  if (number < 0 || number > kLargestNumber) {
    return std::unexpected("the catalogue number " + std::to_string(number) + " has no five-character form");
  }
  std::string const low = std::to_string(number % 10'000);
  int const high = number / 10'000;
  char const first = high < 10 ? static_cast<char>('0' + high) : kAlpha5[static_cast<std::size_t>(high) - 10];
  return first + std::string(4 - low.size(), '0') + low;
}

int checksumOf(std::string_view line) {
  int sum = 0;
  for (char const c : line.substr(0, kLineLength - 1)) sum += isDigit(c) ? c - '0' : c == '-' ? 1 : 0;
  return sum % 10;
}

Result<TLE, std::string> readElementPair(std::string_view name, std::string_view line1,
                                         std::string_view line2, Checksums checksums) {
  if (auto problem = shapeProblem(line1, line2); !problem.empty()) return std::unexpected(std::move(problem));
  auto const number = commonNumber(line1, line2);
  if (!number) return std::unexpected(number.error());
  if (checksums == Checksums::enforced) {
    for (std::string_view const line : {line1, line2}) {
      if (auto problem = checksumProblem(line); !problem.empty()) return std::unexpected(std::move(problem));
    }
  }
  TLE tle;
  tle.name = cleanText(name, kNameLimit, TextLines::one);
  tle.satnum = *number;
  Fields fields;
  readLine1(tle, line1, fields);
  readLine2(tle, line2, fields);
  if (!fields.reason().empty()) return std::unexpected(fields.reason());
  return tle;
}

TLEDocument readElements(std::string_view text, Checksums checksums) {
  return Reader(text, checksums).read();
}

}  // namespace nimbara::SGP4
