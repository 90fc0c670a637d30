#include "platform/linux/sound_files.h"

#include "support/paths.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

namespace nimbara {
namespace {

constexpr std::string_view kSounds[] = {
    "rain_alert.caf",      "storm_alert.caf",      "flood_alert.caf",       "uv_high.caf",
    "weather_warning.caf", "weather_critical.caf", "lightning_alert.caf",   "hurricane_alert.caf",
    "morning_summary.caf", "evening_summary.caf",  "beta_notification.caf", "temp_drop.caf",
    "wind_alert.caf"};

struct Header {
  char riff[4];
  std::uint32_t size;
  char waveFormat[8];
  std::uint32_t formatSize;
  std::uint16_t format, channels;
  std::uint32_t rate, byteRate;
  std::uint16_t frame, bits;
  char data[4];
  std::uint32_t dataSize;
};
static_assert(sizeof(Header) == 44);

std::string contentOf(std::string_view logicalName) {
  auto const path = soundFile(logicalName, soundsDirectory(test::kProgram));
  if (!path) return {};
  std::ifstream file(*path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

double loudnessOf(std::vector<std::int16_t> const& samples) {
  double sum = 0;
  for (double const sample : samples) sum += sample * sample;
  return std::sqrt(sum / static_cast<double>(samples.size()));
}

TEST(Sounds, AreWholeFilesThatCanBeHeard) {
  std::set<std::string> different;
  for (std::string_view const name : kSounds) {
    SCOPED_TRACE(name);
    std::string const bytes = contentOf(name);
    ASSERT_GT(bytes.size(), sizeof(Header));
    Header header;
    std::memcpy(&header, bytes.data(), sizeof header);
    EXPECT_EQ(std::string_view(header.riff, 4), "RIFF");
    EXPECT_EQ(std::string_view(header.waveFormat, 8), "WAVEfmt ");
    EXPECT_EQ(std::string_view(header.data, 4), "data");
    EXPECT_EQ(header.size, bytes.size() - 8);
    EXPECT_EQ(header.dataSize, bytes.size() - sizeof(Header));
    EXPECT_EQ(header.format, 1);
    EXPECT_EQ(header.channels, 1);
    EXPECT_EQ(header.bits, 16);
    EXPECT_EQ(header.byteRate, header.rate * header.frame);
    std::vector<std::int16_t> samples(header.dataSize / 2);
    std::memcpy(samples.data(), bytes.data() + sizeof(Header), header.dataSize);
    EXPECT_LE(static_cast<double>(samples.size()) / header.rate, 2.5);
    EXPECT_GE(static_cast<double>(samples.size()) / header.rate, 0.5);
    auto const [lowest, highest] = std::ranges::minmax(samples);
    int const peak = std::max<int>(highest, -lowest);
    EXPECT_LT(peak, 32'000);  // below full scale
    EXPECT_GT(peak, 8'000);
    EXPECT_GT(loudnessOf(samples), 500);
    EXPECT_LT(std::abs(samples.front()), 50);  // no click at either end
    EXPECT_LT(std::abs(samples.back()), 50);
    EXPECT_TRUE(different.insert(bytes).second);
  }
}

TEST(Sounds, WarnLouderThanTheyTell) {
  auto const peak = [](std::string_view name) {
    std::string const bytes = contentOf(name);
    std::vector<std::int16_t> samples((bytes.size() - sizeof(Header)) / 2);
    std::memcpy(samples.data(), bytes.data() + sizeof(Header), 2 * samples.size());
    return loudnessOf(samples);
  };
  EXPECT_GT(peak("weather_critical.caf"), peak("weather_warning.caf"));
  EXPECT_GT(peak("weather_warning.caf"), peak("rain_alert.caf"));
  EXPECT_GT(peak("weather_warning.caf"), peak("morning_summary.caf"));
}

TEST(SoundFile, StaysInItsFolder) {
  test::TemporaryFolder const folder;
  folder.write("rain_alert.wav", "x");
  folder.write("out.wav", "x");
  std::filesystem::create_directory(folder.path() / "inner");
  std::filesystem::create_directory(folder.path() / "inner" / "folder.wav");
  EXPECT_EQ(soundFile("rain_alert.caf", folder.path()), folder.path() / "rain_alert.wav");
  for (std::string_view const name : {"", ".caf", "rain_alert", "rain_alert.wav", "RAIN_ALERT.caf",
                                      "rain alert.caf", "/rain_alert.caf", "snow.caf"}) {
    EXPECT_FALSE(soundFile(name, folder.path())) << name;
  }
  EXPECT_FALSE(soundFile("../out.caf", folder.path() / "inner"));
  EXPECT_FALSE(soundFile("folder.caf", folder.path() / "inner"));
  EXPECT_FALSE(soundFile("rain_alert.caf", folder.path() / "missing"));
}

TEST(SoundFile, LiesBesideTheProgram) {
  EXPECT_EQ(soundsDirectory("/usr/bin/nimbara"), "/usr/share/nimbara/sounds");
}

}  // namespace
}  // namespace nimbara
