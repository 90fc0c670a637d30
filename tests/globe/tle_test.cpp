#include "globe/tle.h"

#include "support/samples.h"

#include <gtest/gtest.h>

#include <numbers>

namespace nimbara::SGP4 {
namespace {

constexpr double kRadians = std::numbers::pi / 180;

/// A made-up set with sound checksums; `number` is written into columns 3-7 of both lines.
struct Lines {
  std::string line1 = "1 40001U 26010A   26325.25000000  .00012345 -12345-6  36258-3 0  9990";
  std::string line2 = "2 40001  51.6400 100.0000 0007000  90.0000 270.0000 15.50000000123450";

  Lines& put(std::string& line, std::size_t column, std::string_view text) {
    line.replace(column - 1, text.size(), text);
    return *this;
  }
  Lines& number(std::string_view digits) { return put(line1, 3, digits).put(line2, 3, digits); }
  Lines& seal() {
    for (std::string* const line : {&line1, &line2}) (*line)[68] = static_cast<char>('0' + checksumOf(*line));
    return *this;
  }
  std::string text(std::string const& end = "\n") const { return line1 + end + line2 + end; }
};

TLE only(std::string const& text, Checksums checksums = Checksums::enforced) {
  auto const document = readElements(text, checksums);
  EXPECT_EQ(document.elements.size(), 1U) << (document.problems.empty() ? "" : document.problems[0].reason);
  return document.elements.empty() ? TLE{} : document.elements.front();
}

TEST(TLEReader, ReadsEveryField) {
  TLE const tle = only("TESTSAT 1\n" + Lines().seal().text());
  EXPECT_EQ(tle.name, "TESTSAT 1");
  EXPECT_EQ(tle.satnum, 40001);
  EXPECT_EQ(tle.intldesg, "26010A");
  EXPECT_EQ(formatIso8601(tle.epoch), "2026-11-21T06:00:00Z");
  EXPECT_DOUBLE_EQ(tle.epochJD, 2461365.75);
  EXPECT_DOUBLE_EQ(tle.epochDay, 2461365.5);
  EXPECT_DOUBLE_EQ(tle.epochFraction, 0.25);
  EXPECT_DOUBLE_EQ(tle.ndot, 0.00012345);
  EXPECT_DOUBLE_EQ(tle.nddot, -0.12345e-6);
  EXPECT_DOUBLE_EQ(tle.bstar, 0.36258e-3);
  EXPECT_DOUBLE_EQ(tle.inclo, 51.64 * kRadians);
  EXPECT_DOUBLE_EQ(tle.nodeo, 100 * kRadians);
  EXPECT_DOUBLE_EQ(tle.ecco, 0.0007);
  EXPECT_DOUBLE_EQ(tle.argpo, 90 * kRadians);
  EXPECT_DOUBLE_EQ(tle.mo, 270 * kRadians);
  EXPECT_DOUBLE_EQ(tle.no_kozai, 15.5 * 2 * std::numbers::pi / 1440);
}

TEST(TLEReader, NamesComeInManyForms) {
  std::string const lines = Lines().seal().text();
  std::pair<std::string, std::string> const rows[] = {{"PLAIN\n", "PLAIN"},
                                                      {"0 WITH ZERO\n", "WITH ZERO"},
                                                      {"PADDED                  \n", "PADDED"},
                                                      {"CARRIAGE\r\n", "CARRIAGE"},
                                                      {"", ""},
                                                      {"EARLIER\nLATER\n", "LATER"},
                                                      {"NAME\n\n \r\n", "NAME"},
                                                      {"NAME\n# a comment\n", "NAME"},
                                                      {"1 OF TWO\n", "1 OF TWO"},
                                                      {"0 \n", ""}};
  for (auto const& [before, name] : rows) EXPECT_EQ(only(before + lines).name, name) << before;
}

TEST(TLEReader, EndsOfLinesDoNotMatter) {
  std::string const crlf = "A\r\n" + Lines().seal().text("\r\n");
  EXPECT_EQ(only(crlf), only("A\n" + Lines().seal().text()));
  EXPECT_EQ(only(crlf.substr(0, crlf.size() - 2)), only(crlf)) << "without a last line break";
  EXPECT_EQ(only("A\n" + Lines().seal().text("    0.00   4320.0   360.0\n")), only(crlf))
      << "beyond column 69";
}

TEST(TLEReader, YearsTurnAtFiftySeven) {
  std::pair<std::string_view, std::string_view> const rows[] = {
      {"57001.00000000", "1957-01-01T00:00:00Z"},
      {"56366.99999999", "2056-12-31T23:59:59.999Z"},
      {"00001.50000000", "2000-01-01T12:00:00Z"},
      {"99365.00000000", "1999-12-31T00:00:00Z"}};
  for (auto const& [columns, epoch] : rows) {
    Lines lines;
    EXPECT_EQ(formatIso8601(only(lines.put(lines.line1, 19, columns).seal().text()).epoch), epoch);
  }
}

TEST(TLEReader, CatalogNumbers) {
  std::pair<std::string_view, int> const good[] = {
      {"00005", 5},       {"    5", 5},       {"99999", 99'999},  {"A0000", 100'000}, {"E8493", 148'493},
      {"H0001", 170'001}, {"J0000", 180'000}, {"N9999", 229'999}, {"P0000", 230'000}, {"Z9999", 339'999}};
  for (auto const& [columns, number] : good) {
    EXPECT_EQ(readCatalogNumber(columns).value_or(-1), number) << columns;
    EXPECT_EQ(only(Lines().number(columns).seal().text()).satnum, number) << columns;
  }
  for (std::string_view const bad :
       {"I0000", "O0000", "a0000", "1A000", "     ", "12 45", "A 001", "-0001", "é000"}) {
    EXPECT_FALSE(readCatalogNumber(bad)) << bad;
  }
}

TEST(TLEReader, WrittenNumbersReadBack) {
  for (int const number : {0, 5, 99'999, 100'000, 148'493, 179'999, 180'000, 229'999, 230'000, 339'999}) {
    EXPECT_EQ(readCatalogNumber(writeCatalogNumber(number).value_or("")).value_or(-1), number);
  }
  EXPECT_FALSE(writeCatalogNumber(-1));
  EXPECT_FALSE(writeCatalogNumber(340'000));
}

struct Spoilt {
  int line;
  std::size_t column;
  std::string_view text;
  std::string_view reason;
};

TEST(TLEReader, RubbishInAnyColumnIsNamed) {
  Spoilt const rows[] = {{1, 3, "4000I", "the catalogue number cannot be read"},
                         {1, 3, "40002", "the lines belong to different satellites, 40002 and 40001"},
                         {1, 19, "XX325", "the epoch cannot be read"},
                         {1, 21, "000", "the epoch cannot be read"},
                         {1, 21, "367", "the epoch cannot be read"},
                         {1, 24, "0", "the epoch cannot be read"},
                         {1, 36, "?", "the mean motion's change cannot be read"},
                         {1, 47, "?", "the mean motion's second change cannot be read"},
                         {1, 56, "x", "the drag term cannot be read"},
                         {2, 9, "     nan", "the inclination cannot be read"},
                         {2, 9, "180.0001", "the inclination is out of range"},
                         {2, 9, " -1.0000", "the inclination is out of range"},
                         {2, 18, "360.0001", "the ascending node is out of range"},
                         {2, 27, "00x7000", "the eccentricity cannot be read"},
                         {2, 27, "-000700", "the eccentricity cannot be read"},
                         {2, 35, "        ", "the argument of perigee cannot be read"},
                         {2, 44, "400.0000", "the mean anomaly is out of range"},
                         {2, 53, " 0.00000000", "the mean motion is not positive"},
                         {2, 53, "1e5.0000000", "the mean motion cannot be read"}};
  for (auto const& [line, column, text, reason] : rows) {
    Lines lines;
    lines.put(line == 1 ? lines.line1 : lines.line2, column, text).seal();
    auto const document = readElements(lines.text());
    EXPECT_TRUE(document.elements.empty()) << reason;
    ASSERT_EQ(document.problems.size(), 1U) << reason;
    EXPECT_EQ(document.problems[0].reason, reason);
  }
}

TEST(TLEReader, AWrongChecksumDropsTheRecordUnlessOnlyReported) {
  Lines lines = Lines().seal();
  lines.line2[19] = '1';
  auto const enforced = readElements(lines.text());
  EXPECT_TRUE(enforced.elements.empty());
  ASSERT_EQ(enforced.problems.size(), 1U);
  EXPECT_TRUE(enforced.problems[0].dropped);
  auto const reported = readElements(lines.text(), Checksums::reported);
  EXPECT_EQ(reported.elements.size(), 1U);
  ASSERT_EQ(reported.problems.size(), 1U);
  EXPECT_EQ(reported.problems[0].line, 2U);
  EXPECT_FALSE(reported.problems[0].dropped);
}

TEST(TLEReader, TheNextRecordIsFoundBehindABadOne) {
  Lines const good = Lines().number("40002").seal();
  Lines const bad = Lines().seal();
  std::string const rows[] = {"BAD\n" + bad.line1 + "\n",
                              "BAD\n" + bad.line2 + "\n",
                              "BAD\n" + bad.line1 + "\nANOTHER NAME\n" + bad.line2 + "\n",
                              "BAD\n" + bad.line2 + "\n" + bad.line1 + "\n",
                              "BAD\n" + bad.line1.substr(0, 68) + "\n" + bad.line2 + "\n",
                              bad.line1 + "\n" + bad.line1.substr(0, 20) + "\n"};
  for (std::string const& before : rows) {
    auto const document = readElements(before + "GOOD\n" + good.text());
    ASSERT_EQ(document.elements.size(), 1U) << before;
    EXPECT_EQ(document.elements[0].satnum, 40002);
    EXPECT_EQ(document.elements[0].name, "GOOD");
    EXPECT_FALSE(document.problems.empty()) << before;
  }
}

TEST(TLEReader, EveryCutOfARecordIsSurvived) {
  std::string const text = "NAME\n" + Lines().seal().text();
  for (std::size_t size = 0; size < text.size() - 1; ++size) {
    EXPECT_TRUE(readElements(text.substr(0, size)).elements.empty()) << size;
  }
  EXPECT_TRUE(readElements("<!doctype html>\n<html><body>1 2 3</body></html>").elements.empty());
  EXPECT_TRUE(readElements(std::string(1 << 20, '1')).elements.empty());
}

TEST(TLEReader, RecordedGroupsAreReadWhole) {
  auto const files = test::sampleFiles("tle");
  if (!files) GTEST_SKIP() << "no samples are named";
  std::pair<std::string, std::size_t> const rows[] = {{"starlink-2022-01-09.txt", 1806},
                                                      {"oneweb-2022-01-09.txt", 394},
                                                      {"stations-2026-08-22.txt", 21},
                                                      {"weather-2026-08-22.txt", 74},
                                                      {"galileo-2026-08-22.txt", 32},
                                                      {"glo-ops-2020-04-02.txt", 25},
                                                      {"cosmos-2251-debris-2021-10-03.txt", 1047},
                                                      {"iridium-33-debris-2021-10-03.txt", 332}};
  for (auto const& [name, count] : rows) {
    auto const document = readElements(test::readFile(files->front().parent_path() / name));
    EXPECT_EQ(document.elements.size(), count) << name;
    EXPECT_TRUE(document.problems.empty()) << name << ": " << document.problems[0].reason;
  }
}

}  // namespace
}  // namespace nimbara::SGP4
