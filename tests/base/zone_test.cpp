#include "base/files/file.h"
#include "base/time/calendar.h"
#include "base/time/zone_database.h"
#include "base/time/zone_rules.h"
#include "support/instants.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using std::chrono::seconds;
using test::at;
using test::date;

std::chrono::sys_seconds moment(std::string const& text) {
  return std::chrono::floor<seconds>(at(text));
}

struct RuleRow {
  char const* zone;
  char const* moment;
  seconds offset;
};

void PrintTo(RuleRow const& row, std::ostream* out) {
  *out << row.zone << " at " << row.moment;
}

class PosixZones : public testing::TestWithParam<RuleRow> {};

TEST_P(PosixZones, SayTheOffsetOfEveryMoment) {
  auto const zone = parsePosixZone(GetParam().zone);
  ASSERT_TRUE(zone);
  EXPECT_EQ(zone->offset(moment(GetParam().moment)), GetParam().offset);
}

constexpr char const* kBerlin = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr char const* kSydney = "AEST-10AEDT,M10.1.0,M4.1.0/3";
constexpr char const* kLordHowe = "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0";
constexpr char const* kDublin = "IST-1GMT0,M10.5.0,M3.5.0/1";
constexpr char const* kNuuk = "<-02>2<-01>,M3.5.0/-1,M10.5.0/0";
constexpr char const* kGaza = "EET-2EEST,M3.4.4/50,M10.4.4/50";
constexpr char const* kJulian = "AAA3BBB,J60/0,J300/0";
constexpr char const* kOrdinal = "AAA3BBB,59/0,300/0";

INSTANTIATE_TEST_SUITE_P(
    Rows, PosixZones,
    testing::Values(
        RuleRow{"<+0545>-5:45", "2026-07-01T00:00:00Z", 5h + 45min},
        RuleRow{"EST5", "2026-07-01T00:00:00Z", -5h}, RuleRow{"XXX-0:00:30", "2026-07-01T00:00:00Z", 30s},
        RuleRow{kBerlin, "2050-03-27T00:59:59Z", 1h}, RuleRow{kBerlin, "2050-03-27T01:00:00Z", 2h},
        RuleRow{kBerlin, "2050-10-30T00:59:59Z", 2h}, RuleRow{kBerlin, "2050-10-30T01:00:00Z", 1h},
        RuleRow{kSydney, "2026-12-31T23:59:59Z", 11h}, RuleRow{kSydney, "2026-04-04T15:59:59Z", 11h},
        RuleRow{kSydney, "2026-04-04T16:00:00Z", 10h}, RuleRow{kLordHowe, "2026-04-04T14:59:59Z", 11h},
        RuleRow{kLordHowe, "2026-04-04T15:00:00Z", 10h + 30min}, RuleRow{kDublin, "2026-01-01T00:00:00Z", 0h},
        RuleRow{kDublin, "2026-07-01T00:00:00Z", 1h}, RuleRow{kNuuk, "2026-03-29T00:59:59Z", -2h},
        RuleRow{kNuuk, "2026-03-29T01:00:00Z", -1h}, RuleRow{kGaza, "2026-03-27T23:59:59Z", 2h},
        RuleRow{kGaza, "2026-03-28T00:00:00Z", 3h}, RuleRow{kJulian, "2028-03-01T02:59:59Z", -3h},
        RuleRow{kJulian, "2028-03-01T03:00:00Z", -2h}, RuleRow{kOrdinal, "2028-02-29T02:59:59Z", -3h},
        RuleRow{kOrdinal, "2028-02-29T03:00:00Z", -2h},
        // Summer time all year round.
        RuleRow{"XXX3EDT4,0/0,J365/23", "2026-01-01T03:00:00Z", -4h},
        RuleRow{"XXX3EDT4,0/0,J365/23", "2026-12-31T23:00:00Z", -4h}));

TEST(PosixZone, RefusesOtherTexts) {
  for (char const* const text :
       {"", "C", "CE-1", "CET", "CET-25", "CET-1CEST", "CET-1CEST,M3.5.0", "CET-1CEST,M13.5.0,M10.5.0",
        "CET-1CEST,M3.6.0,M10.5.0", "CET-1CEST,M3.5.7,M10.5.0", "CET-1CEST,J0,J300", "CET-1CEST,366,1",
        "CET-1CEST,M3.5.0/168,M10.5.0", "CET-1CEST,M3.5.0,M10.5.0x", "<+01-1", "CET-1:60"}) {
    EXPECT_FALSE(parsePosixZone(text)) << text;
  }
}

/// A compiled file: changes of 64-bit times and the text for what comes after them.
struct ZoneFile {
  std::vector<std::pair<std::int64_t, unsigned char>> changes;
  std::vector<std::int32_t> types{0};
  std::string footer;
  char version = '2';
  std::uint32_t leapSeconds = 0;

  static std::string big(std::uint64_t number, std::size_t size) {
    std::string bytes;
    for (std::size_t i = size; i > 0; --i) bytes += static_cast<char>(number >> (8 * (i - 1)));
    return bytes;
  }

  std::string block(std::size_t timeSize) const {
    std::string out = std::string("TZif") + version + std::string(15, '\0') + big(0, 8) +
                      big(leapSeconds, 4) + big(changes.size(), 4) + big(types.size(), 4) + big(4, 4);
    for (auto const& [time, type] : changes) out += big(static_cast<std::uint64_t>(time), timeSize);
    for (auto const& [time, type] : changes) out += static_cast<char>(type);
    for (auto const type : types) out += big(static_cast<std::uint32_t>(type), 4) + std::string(2, '\0');
    return out + std::string("XXX\0", 4) + std::string(leapSeconds * (timeSize + 4), '\0');
  }

  std::string bytes() const {
    if (version < '2') return block(4);
    return block(4) + block(8) + "\n" + footer + "\n";
  }
};

constexpr std::int64_t kNewYear2020 = 1577836800;
constexpr std::int64_t kNewYear2026 = 1767225600;

ZoneFile madeUp() {
  return {{{kNewYear2020, 1}, {kNewYear2026, 2}}, {-3600, 7200, 20700}, "<+0545>-5:45"};
}

TEST(ZoneFiles, GiveTheOffsetFromEachChangeOn) {
  for (char const version : {'1', '2', '3'}) {
    ZoneFile file = madeUp();
    file.version = version;
    auto const rules = ZoneRules::fromTzif(file.bytes());
    ASSERT_TRUE(rules) << version;
    EXPECT_EQ(rules->offset(moment("1900-01-01T00:00:00Z")), -1h);
    EXPECT_EQ(rules->offset(moment("2019-12-31T23:59:59Z")), -1h);
    EXPECT_EQ(rules->offset(moment("2020-01-01T00:00:00Z")), 2h);
    EXPECT_EQ(rules->offset(moment("2025-12-31T23:59:59Z")), 2h);
    EXPECT_EQ(rules->offset(moment("2100-01-01T00:00:00Z")), 5h + 45min);
  }
}

TEST(ZoneFiles, GoOnByTheTextAtTheirEnd) {
  ZoneFile file = madeUp();
  file.footer = kBerlin;
  EXPECT_EQ(ZoneRules::fromTzif(file.bytes())->offset(moment("2050-07-01T00:00:00Z")), 2h);
  EXPECT_EQ(ZoneRules::fromTzif(file.bytes())->offset(moment("2025-07-01T00:00:00Z")), 2h);
  file.footer = "";
  EXPECT_EQ(ZoneRules::fromTzif(file.bytes())->offset(moment("2050-07-01T00:00:00Z")), 5h + 45min);
  file.changes.clear();
  EXPECT_EQ(ZoneRules::fromTzif(file.bytes())->offset(moment("2050-07-01T00:00:00Z")), -1h);
}

TEST(ZoneFiles, AreRefusedWhenTheyAreNone) {
  std::string const whole = madeUp().bytes();
  for (std::size_t cut = 0; cut + madeUp().footer.size() + 2 < whole.size(); ++cut) {
    EXPECT_FALSE(ZoneRules::fromTzif(whole.substr(0, cut))) << cut;
  }
  for (std::size_t place = 0; place < whole.size(); ++place) {
    std::string damaged = whole;
    damaged[place] = static_cast<char>(~damaged[place]);
    if (auto const rules = ZoneRules::fromTzif(damaged)) rules->offset(moment("2026-07-01T00:00:00Z"));
  }
  ZoneFile leaping = madeUp();
  leaping.leapSeconds = 1;
  ZoneFile typeless = madeUp();
  typeless.types.clear();
  ZoneFile backwards = madeUp();
  std::swap(backwards.changes[0], backwards.changes[1]);
  ZoneFile foreign = madeUp();
  foreign.changes[0].second = 3;
  ZoneFile far = madeUp();
  far.types[1] = 27 * 3600;
  for (ZoneFile const& file : {leaping, typeless, backwards, foreign, far}) {
    EXPECT_FALSE(ZoneRules::fromTzif(file.bytes()));
  }
}

class ZoneDatabases : public testing::Test {
 protected:
  void write(std::string const& name, ZoneFile const& file) {
    ASSERT_TRUE(writeFileAtomically(folder_.path() / name, file.bytes()));
  }

  test::TemporaryFolder folder_;
  ZoneDatabase database_{folder_.path() / "zoneinfo"};
};

TEST_F(ZoneDatabases, AreReadBeforeTheLibrarysTables) {
  write("zoneinfo/Europe/Berlin", madeUp());
  write("zoneinfo/Utopia/Amaurot", madeUp());
  EXPECT_EQ(Calendar::forZone("Europe/Berlin", database_)->offset(at("2026-07-01T00:00:00Z")), 5h + 45min);
  EXPECT_EQ(Calendar::forZone("Utopia/Amaurot", database_)->zoneId(), "Utopia/Amaurot");
  // What the folder lacks, or cannot give, the library's tables may still know.
  ASSERT_TRUE(writeFileAtomically(folder_.path() / "zoneinfo/Europe/Vienna", "no zone"));
  for (char const* const name : {"Europe/Vienna", "Europe/Paris"}) {
    Calendar const calendar = *Calendar::forZone(name, database_);
    EXPECT_EQ(calendar.offset(at("2026-03-29T00:59:59Z")), 1h);
    EXPECT_EQ(calendar.offset(at("2026-03-29T01:00:00Z")), 2h);
    EXPECT_EQ(calendar.offset(at("2040-07-01T00:00:00Z")), 2h);
  }
}

TEST_F(ZoneDatabases, TakeNamesAndNoPaths) {
  for (char const* const name : {"localtime", "posix/Utopia", "right/Utopia", "a.tab", "a/b"}) {
    write("zoneinfo/" + std::string(name), madeUp());
  }
  write("secret", madeUp());
  for (std::string const& name :
       {std::string("../secret"), (folder_.path() / "secret").string(), std::string("a//b"),
        std::string("/a/b"), std::string("a/b/"), std::string("localtime"), std::string("posix/Utopia"),
        std::string("right/Utopia"), std::string("a.tab"), std::string("a"), std::string(),
        std::string(65, 'a'), std::string("a\0b", 3)}) {
    EXPECT_EQ(database_.find(name), nullptr) << name;
  }
  EXPECT_NE(database_.find("a/b"), nullptr);
}

TEST_F(ZoneDatabases, TellInWhichZoneTheMachineStands) {
  write("zoneinfo/Utopia/Amaurot", madeUp());
  write("zoneinfo/Utopia/Other", {});
  write("copy", madeUp());
  std::filesystem::create_symlink(folder_.path() / "zoneinfo/Utopia/Amaurot", folder_.path() / "link");
  ASSERT_TRUE(writeFileAtomically(folder_.path() / "name", "Utopia/Amaurot\n"));
  ASSERT_TRUE(writeFileAtomically(folder_.path() / "wrongName", "Utopia/Other\n"));
  struct Row {
    std::optional<std::string> variable;
    char const* localTime;
    char const* name;
    char const* zone;
    seconds offset;
  };
  std::string const path = (folder_.path() / "zoneinfo/Utopia/Amaurot").string();
  for (Row const& row :
       {Row{{}, "link", "none", "Utopia/Amaurot", 5h + 45min},
        Row{{}, "copy", "name", "Utopia/Amaurot", 5h + 45min},
        Row{{}, "copy", "wrongName", "copy", 5h + 45min}, Row{{}, "copy", "none", "copy", 5h + 45min},
        Row{{}, "none", "name", "UTC", 0s}, Row{"", "link", "name", "UTC", 0s},
        Row{":Utopia/Amaurot", "none", "none", "Utopia/Amaurot", 5h + 45min},
        Row{path, "none", "none", "Utopia/Amaurot", 5h + 45min}, Row{"AAA-2", "link", "name", "AAA-2", 2h},
        Row{"nonsense", "link", "name", "Utopia/Amaurot", 5h + 45min}}) {
    MachineZone const machine{row.variable, folder_.path() / row.localTime, folder_.path() / row.name};
    NamedZone const zone = findMachineZone(machine, database_);
    EXPECT_EQ(zone.name, row.zone);
    EXPECT_EQ(zone.rules->offset(moment("2026-07-01T00:00:00Z")), row.offset) << row.zone;
  }
}

/// Countries that changed their clocks in recent years, as the system's database has them.
struct ChangedZone {
  char const* zone;
  char const* moment;
  seconds offset;
};

void PrintTo(ChangedZone const& row, std::ostream* out) {
  *out << row.zone << " at " << row.moment;
}

class ChangedZones : public testing::TestWithParam<ChangedZone> {};

TEST_P(ChangedZones, FollowTheSystemsDatabase) {
  EXPECT_EQ(test::zone(GetParam().zone).offset(at(GetParam().moment)), GetParam().offset);
}

INSTANTIATE_TEST_SUITE_P(Rows, ChangedZones,
                         testing::Values(ChangedZone{"America/Mexico_City", "2026-07-01T00:00:00Z", -6h},
                                         ChangedZone{"Africa/Cairo", "2026-07-01T00:00:00Z", 3h},
                                         ChangedZone{"Asia/Almaty", "2026-07-01T00:00:00Z", 5h},
                                         ChangedZone{"America/Asuncion", "2026-07-01T00:00:00Z", -3h},
                                         ChangedZone{"America/Nuuk", "2026-07-01T00:00:00Z", -1h},
                                         ChangedZone{"America/Nuuk", "2026-01-01T00:00:00Z", -2h},
                                         ChangedZone{"Asia/Kathmandu", "2026-07-01T00:00:00Z", 5h + 45min},
                                         ChangedZone{"Australia/Eucla", "2026-07-01T00:00:00Z", 8h + 45min},
                                         ChangedZone{"Pacific/Chatham", "2026-01-01T00:00:00Z", 13h + 45min},
                                         ChangedZone{"Australia/Lord_Howe", "2026-07-01T00:00:00Z",
                                                     10h + 30min},
                                         ChangedZone{"Pacific/Kiritimati", "2026-07-01T00:00:00Z", 14h},
                                         ChangedZone{"Pacific/Pago_Pago", "2026-07-01T00:00:00Z", -11h}));

struct OddDay {
  char const* zone;
  char const* date;
  char const* start;
  std::chrono::minutes length;
};

void PrintTo(OddDay const& row, std::ostream* out) {
  *out << row.zone << " on " << row.date;
}

class OddDays : public testing::TestWithParam<OddDay> {};

TEST_P(OddDays, HaveTheirTrueBeginAndLength) {
  Calendar const calendar = test::zone(GetParam().zone);
  EXPECT_EQ(formatIso8601(calendar.startOfDay(date(GetParam().date))), GetParam().start);
  EXPECT_EQ(calendar.lengthOfDay(date(GetParam().date)), GetParam().length);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, OddDays,
    testing::Values(OddDay{"Australia/Lord_Howe", "2026-10-04", "2026-10-03T13:30:00Z", 23h + 30min},
                    OddDay{"Australia/Lord_Howe", "2026-04-05", "2026-04-04T13:00:00Z", 24h + 30min},
                    OddDay{"Africa/Cairo", "2026-04-24", "2026-04-23T22:00:00Z", 23h},
                    OddDay{"Africa/Cairo", "2026-10-29", "2026-10-28T21:00:00Z", 25h},
                    // Clocks go from midnight to one o'clock, and from midnight back to eleven.
                    OddDay{"America/Santiago", "2026-09-06", "2026-09-06T04:00:00Z", 23h},
                    OddDay{"America/Santiago", "2026-04-04", "2026-04-04T03:00:00Z", 25h},
                    OddDay{"Pacific/Chatham", "2026-04-05", "2026-04-04T10:15:00Z", 25h},
                    // Samoa left out a whole day.
                    OddDay{"Pacific/Apia", "2011-12-30", "2011-12-30T10:00:00Z", 0h},
                    OddDay{"Pacific/Apia", "2011-12-31", "2011-12-30T10:00:00Z", 24h}));

}  // namespace
}  // namespace nimbara
