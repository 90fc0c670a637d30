// Any bytes as the index of a recording: it is read as far as it goes, and no line of it leads out of the
// recording's folder.

#include "app/recording/http_recording.h"

#include <cstdint>
#include <cstdlib>
#include <fstream>

namespace {

/// In memory where the system has such a folder.
std::filesystem::path madeFolder() {
  std::error_code ignored;
  bool const hasMemory = std::filesystem::is_directory("/dev/shm", ignored);
  std::string name = (hasMemory ? "/dev/shm" : std::filesystem::temp_directory_path().string()) +
                     "/nimbara-fuzz-recordings-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) std::abort();
  std::filesystem::create_directory(std::filesystem::path(name) / "bodies");
  std::ofstream(std::filesystem::path(name) / "secret") << "outside of the bodies";
  return name;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace nimbara;
  static std::filesystem::path const kFolder = madeFolder();
  std::ofstream(kFolder / "index.jsonl", std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<char const*>(data), static_cast<std::streamsize>(size));
  FixedClock const clock(Instant(std::chrono::hours(24 * 365 * 200)));
  RecordedHttpClient client(kFolder, clock, nullptr);
  for (char const* const url :
       {"https://a/x", "https://api.open-meteo.com/v1/forecast?latitude=1&longitude=2"}) {
    auto const answer = client.get({url});
    if (answer && answer->body.find("outside of the bodies") != std::string::npos) std::abort();
  }
  return 0;
}
