#include "feeds/regions/region_names.h"

#include "base/text/search_text.h"
#include "base/text/text.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace nimbara {

namespace {

/// As `searchFolded` writes them.
constexpr std::string_view kAdministrativeWords[] = {
    // English
    "county",
    "district",
    "region",
    "province",
    "municipality",
    "department",
    "state",
    "city",
    "governorate",
    "prefecture",
    "voivodeship",
    "canton",
    "borough",
    "parish",
    "capital",
    "metropolitan",
    "autonomous",
    "community",
    "republic",
    "sub",
    "federal",
    "constituent",
    "rayon",
    "oblast",
    "unit",
    "regional",
    "council",
    // German, Dutch, the north
    "land",
    "landkreis",
    "kreis",
    "bezirk",
    "kanton",
    "stadt",
    "kreisfreie",
    "freistaat",
    "regierungsbezirk",
    "gemeinde",
    "politischer",
    "provincie",
    "gemeente",
    "fylke",
    "lan",
    "kommune",
    "kommun",
    "amt",
    "regionen",
    "maakunta",
    "landskap",
    "maakond",
    "sysla",
    "svaedid",
    "hofudborgarsvaedid",
    // Romance
    "provincia",
    "province",
    "departement",
    "departamento",
    "distrito",
    "comunidad",
    "comunitat",
    "comunita",
    "autonoma",
    "autonome",
    "autonomo",
    "regione",
    "regiao",
    "arrondissement",
    "distretto",
    "citta",
    "ciudad",
    "metropolitana",
    "judet",
    "judetul",
    "municipiul",
    "mun",
    "raionul",
    "raion",
    "principado",
    "concelho",
    "ville",
    "commune",
    "libero",
    "consorzio",
    "comunale",
    "foral",
    "communaute",
    "capitale",
    "nomarchia",
    "periferia",
    // Slavic
    "wojewodztwo",
    "powiat",
    "gmina",
    "okres",
    "okrug",
    "kraj",
    "obcina",
    "opcina",
    "opstina",
    "zupanija",
    "grad",
    "oblasti",
    "obshtina",
    "regija",
    "hlavni",
    "hlavni mesto",
    "mesto",
    "област",
    "область",
    "община",
    "округ",
    "град",
    "општина",
    "район",
    "раион",
    // Hungarian, Baltic, Greek, Hebrew, Turkish
    "megye",
    "varmegye",
    "jaras",
    "apskritis",
    "sav",
    "savivaldybe",
    "rajonas",
    "novads",
    "rajons",
    "pagasts",
    "περιφερεια",
    "περιφερειακη",
    "ενοτητα",
    "νομος",
    "δημος",
    "periphery",
    "nomos",
    "dimos",
    "mehoz",
    "מחוז",
    "gharbi",
    "vald",
};

/// What joins such a word to the name itself.
constexpr std::string_view kJoiningWords[] = {"of",  "the", "de",  "du",  "des", "del", "della", "dello",
                                              "di",  "da",  "do",  "dos", "das", "d",   "von",   "van",
                                              "and", "y",   "und", "et",  "e",   "og",  "och",   "i"};

/// Words that name no region by themselves: points of the compass, and countries within a country, whose
/// names stand in those of many regions ("South West England").
constexpr std::string_view kNamesOfMany[] = {
    "england",   "scotland",  "wales",    "north",   "south",   "east",   "west",      "northern",
    "southern",  "eastern",   "western",  "central", "centre",  "center", "middle",    "upper",
    "lower",     "greater",   "coast",    "coastal", "islands", "island", "northeast", "northwest",
    "southeast", "southwest", "mainland", "nord",    "sud",     "ost",    "norte",     "sur",
    "sul",       "este",      "oeste",    "ovest",   "centro",  "centru", "centar",    "severen",
    "yuzhen",    "vest",      "syd",      "midt",    "nordre",  "etela",  "pohjois",   "zapad",
    "istok",     "sever",     "jug",      "noord",   "zuid",    "oost",   "mitte"};

bool isOneOf(std::string_view word, auto const& words) {
  return std::ranges::find(words, word) != std::ranges::end(words);
}

/// "Rhein-Hunsrück-Kreis" without its end.
std::string_view withoutHyphenedKind(std::string_view word) {
  auto const hyphen = word.rfind('-');
  if (hyphen == std::string_view::npos || hyphen == 0) return word;
  return isOneOf(searchFolded(word.substr(hyphen + 1)), kAdministrativeWords) ? word.substr(0, hyphen) : word;
}

struct Word {
  std::string_view text;
  std::string folded;
};

std::vector<Word> wordsOf(std::string_view name) {
  std::vector<Word> words;
  for (std::string_view const part : split(name, ' ')) {
    std::string_view const text = withoutHyphenedKind(part);
    if (std::string folded = searchFolded(text); !folded.empty()) words.push_back({text, std::move(folded)});
  }
  return words;
}

/// Joining words go with the kind's word before or after them: "Province of Rome", "Région de la Murcie".
void eraseKinds(std::vector<Word>& words) {
  bool const hadKinds =
      std::erase_if(words, [](Word const& word) { return isOneOf(word.folded, kAdministrativeWords); }) > 0;
  if (!hadKinds) return;
  while (!words.empty() && isOneOf(words.front().folded, kJoiningWords)) words.erase(words.begin());
  while (!words.empty() && isOneOf(words.back().folded, kJoiningWords)) words.pop_back();
}

std::size_t lettersIn(std::string_view utf8) {
  return static_cast<std::size_t>(std::ranges::count_if(
      utf8, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U && c != ' '; }));
}

bool namesNothing(std::vector<Word> const& words) {
  return std::ranges::all_of(words, [](Word const& word) {
    return std::ranges::all_of(split(word.folded, ' '),
                               [](std::string_view part) { return isOneOf(part, kNamesOfMany); });
  });
}

}  // namespace

std::string bareRegionName(std::string_view name) {
  constexpr std::size_t kFewestLetters = 4;
  std::vector<Word> words = wordsOf(name);
  eraseKinds(words);
  if (namesNothing(words)) return {};
  std::string bare;
  for (Word const& word : words) bare += (bare.empty() ? "" : " ") + std::string(word.text);
  return lettersIn(searchFolded(bare)) < kFewestLetters ? std::string() : bare;
}

}  // namespace nimbara
