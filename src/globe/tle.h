// Two-line element sets: what a set says, and a reader of the texts in which they are passed around. The
// reader takes any bytes; it drops what is no sound record, says why, and goes on with the next one.
#pragma once

#include "base/result.h"
#include "base/time/instant.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara::SGP4 {

/// The mean elements of one satellite. Member names are those of the published algorithm.
struct TLE {
  std::string name;          ///< without padding; empty when the text had none
  int satnum = 0;            ///< catalogue number
  std::string intldesg;      ///< international designator, "98067A"; may be empty
  Instant epoch;             ///< rounded to a millisecond
  double epochJD = 0;        ///< Julian date of the epoch, good to 40 µs; the next two hold it exactly
  double epochDay = 0;       ///< Julian date of the midnight that begins the epoch's day
  double epochFraction = 0;  ///< of that day, as printed
  double ndot = 0;           ///< half the first derivative of the mean motion, revolutions per day²
  double nddot = 0;          ///< a sixth of the second derivative, revolutions per day³
  double bstar = 0;          ///< drag term, per earth radius
  double inclo = 0;          ///< inclination, radians
  double nodeo = 0;          ///< right ascension of the ascending node, radians
  double ecco = 0;           ///< eccentricity
  double argpo = 0;          ///< argument of perigee, radians
  double mo = 0;             ///< mean anomaly, radians
  double no_kozai = 0;       ///< mean motion, radians per minute

  bool operator==(TLE const&) const = default;
};

/// What a wrong checksum means: the published verification set has some, a download must not.
enum class Checksums { enforced, reported };

struct TLEProblem {
  std::size_t line = 0;  ///< counted from 1
  std::string reason;    ///< for people, without a full stop
  bool dropped = true;   ///< false: the record was taken all the same

  bool operator==(TLEProblem const&) const = default;
};

struct TLEDocument {
  std::vector<TLE> elements;  ///< in the order of the text
  std::vector<TLEProblem> problems;
};

/// Reads a whole text. Lines may end in CR LF; blank lines and lines that begin with "#" are skipped; a name
/// line may begin with "0 ", be padded or be missing.
TLEDocument readElements(std::string_view text, Checksums checksums = Checksums::enforced);

/// One pair of lines; the error is the reason.
Result<TLE, std::string> readElementPair(std::string_view name, std::string_view line1,
                                         std::string_view line2, Checksums checksums = Checksums::enforced);

/// The number of columns 3-7: digits with leading blanks or zeros, or Alpha-5 ("E8493" is 148493).
Result<int, std::string> readCatalogNumber(std::string_view columns);

/// Five characters: digits, or Alpha-5 above 99999. Nothing for numbers below 0 or above 339999.
Result<std::string, std::string> writeCatalogNumber(int number);

/// The set in its usual form: a name line (none for an empty name) and two lines with their checksums, each
/// with a line break. The error says what the columns cannot hold.
Result<std::string, std::string> writeElements(TLE const& tle);

/// The sum of the first 68 columns, 0-9: digits count their value, "-" counts 1.
int checksumOf(std::string_view line);

}  // namespace nimbara::SGP4
