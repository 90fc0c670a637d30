// The outlines of warning regions from what is published to the text that the repository keeps, and from that
// text to the map that the program reads in place. The second runs while building.

#include "base/files/file.h"
#include "regions/region_map.h"

#include <cstdio>

namespace nimbara {
namespace {

constexpr std::size_t kLongest = std::size_t{256} << 20;

using Done = Result<void, std::string>;

Done makeText(char const* geoJson, char const* aliases, char const* target) {
  auto const document = readFile(geoJson, kLongest);
  if (!document) return std::unexpected(document.error());
  auto const table = readFile(aliases, kLongest);
  if (!table) return std::unexpected(table.error());
  auto const reading = readOutlines(*document);
  if (!reading) return std::unexpected(reading.error());
  if (reading->skipped > 0)
    return std::unexpected(std::to_string(reading->skipped) + " regions are unusable");
  OutlineSet set = outlineSetOf(reading->outlines);
  set.edition = reading->edition;
  set.aliases = readAliases(*table);
  return writeFileAtomically(target, outlineText(set));
}

Done pack(char const* source, char const* target) {
  auto const text = readFile(source, kLongest);
  if (!text) return std::unexpected(text.error());
  auto const set = readOutlineText(*text);
  if (!set) return std::unexpected(set.error());
  return writeFileAtomically(target, regionMapOf(*set));
}

int run(int count, char** words) {
  constexpr int kUsage = 2;
  std::string_view const action = count > 1 ? words[1] : "";
  Done done;
  if (action == "text" && count == 5) {
    done = makeText(words[2], words[3], words[4]);
  } else if (action == "pack" && count == 4) {
    done = pack(words[2], words[3]);
  } else {
    std::fputs("usage: pack_regions text GEOJSON ALIASES TEXT | pack_regions pack TEXT MAP\n", stderr);
    return kUsage;
  }
  if (!done) std::fprintf(stderr, "pack_regions: %s\n", done.error().c_str());
  return done ? 0 : 1;
}

}  // namespace
}  // namespace nimbara

int main(int count, char** words) {
  return nimbara::run(count, words);
}
