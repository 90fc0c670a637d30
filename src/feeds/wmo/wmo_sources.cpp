#include "feeds/wmo/wmo_sources.h"

#include "base/text/text.h"
#include "feeds/fetching/lenient_json.h"
#include "regions/country_code.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

/// Countries with an official source that operated and that the centre mirrored. Of the register of alerting
/// authorities those that operated on 2024-08-03, as an aggregator of it listed them; sources found on the
/// centre's own host by a home automation project on 2026-05-24 and 28; sources of which the centre listed
/// warnings in force on 2026-08-17; without those of `kNotMirrored`, Colombia (left out, below) and Aruba
/// (registered, could not be reached). Sources that were testing then are not in it.
constexpr std::string_view kMirrored =
    "AF AG AI AL AO AR AT AU BA BB BE BG BH BR BW BY BZ CA CF CG CH CI CL CM CN CR CW CY CZ DE DK DO DZ EC "
    "EE "
    "EG ES ET FI FM FR GA GB GH GM GR GY HK HR HU ID IE IL IN IQ IR IS IT JM JO KE KG KM KR KW KZ LC LS LT "
    "LU "
    "LV LY MD ME MG MH MK MN MO MT MU MV MW MX NG NL NO NZ OM PH PL PT PW PY QA RO RS RU SA SB SC SD SE SG "
    "SI "
    "SK SL SN SR SZ TH TL TN TT TZ UA UG US UY VC VG VN ZA ZM ZW";

/// Registered and operating, but not found on the centre's host on 2026-05-24. Of three (Guinea-Bissau, Chad,
/// Vanuatu) it listed warnings on 2026-08-17: such a country counts from the first warning on that is seen.
constexpr std::string_view kNotMirrored = "BF BI BJ CD DJ GN GW ML MM MR MZ NE PG ST TD TG TO VU WS YE";

/// The members of which warnings were in force on 2026-08-17, with the number under which the centre listed
/// them.
constexpr std::string_view kMembers =
    "AT006 AU185 BA005 BE053 BG103 BY106 BZ038 CA056 CH087 CL028 CM055 CN001 CR171 CW181 CZ172 DE016 DZ122 "
    "EC137 EE039 ES083 FI061 FR062 GW064 HR019 HU017 ID043 IE067 IL013 IN066 IT176 JM026 KG177 KR095 KZ070 "
    "LT105 MD108 ME193 MX179 NG075 NL037 NO008 NZ046 PH021 PL009 PT003 RO183 RS101 RU107 SA079 SB139 SD085 "
    "SE096 SI015 TD088 TH089 UA092 US093 UY094 VU169";

struct Alias {
  std::string_view source;
  std::string_view country;
};

/// Sources whose first letters are not their country's.
constexpr std::array kAliases{Alias{"vi-nchmf", "VN"}, Alias{"uk-bviddm", "VG"}};

/// UNGRD's feed repeats what has long ended, that of the disaster management centre of the Maldives holds
/// tests: other users of the centre leave both out. Macau's (mo-smg-xx), which they leave out too, stays: its
/// ends are told as an AllClear, and whoever reads the messages knows it.
constexpr std::array<std::string_view, 2> kLeftOut{"co-ungrd-", "mv-ndmc-"};

/// China's messages name counties by codes of their own; hundreds are in force on any day.
constexpr std::array<std::string_view, 1> kDrawnByCentre{"cn-cma-"};

bool beginsWithOneOf(std::string_view path, auto const& beginnings) {
  return std::ranges::any_of(beginnings, [&](std::string_view one) { return path.starts_with(one); });
}

bool isIn(std::string_view table, std::string_view country) {
  constexpr std::size_t kLetters = 2;
  return country.size() == kLetters && table.contains(country);
}

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

struct WireMember {
  Lenient<std::string> code;
  Lenient<std::string> mid;
  LenientNumber number;
};

struct WireSource {
  Lenient<std::string> sourceId;
  Lenient<std::string> status;
  Lenient<std::string> country;
};

bool isFound(WireMember const& wire) {
  return wire.code.value && (wire.mid.value || wire.number.value);
}

bool isFound(WireSource const& wire) {
  return wire.sourceId.value.has_value();
}

/// "075" of "75", of " 075 " and of the number 75; nothing for what is no number of a member.
std::optional<std::string> memberNumber(WireMember const& wire) {
  constexpr std::size_t kDigits = 3;
  auto const value = wire.mid.value ? parseInteger(trimmed(*wire.mid.value)) : std::nullopt;
  double const number = value ? *value : wire.number.value.value_or(-1);
  constexpr double kLast = 999;
  if (!(number >= 0 && number <= kLast)) return std::nullopt;
  std::string digits = std::to_string(static_cast<int>(number));
  return std::string(kDigits - digits.size(), '0') + digits;
}

std::string countryOf(WireSource const& wire) {
  std::string const id = asciiLowered(*wire.sourceId.value);
  for (Alias const& alias : kAliases) {
    if (id.starts_with(alias.source)) return std::string(alias.country);
  }
  std::string stated = isoCountryCode(trimmed(wire.country.value.value_or("")));
  if (!alpha3CountryCode(stated).empty()) return stated;
  std::string byLong = alpha2CountryCode(stated);
  return byLong.empty() ? countryOfWmoSource(id) : byLong;
}

bool isOfUse(WireSource const& wire) {
  return asciiLowered(trimmed(wire.status.value.value_or(""))) == "operating" &&
         !isLeftOutWmoSource(asciiLowered(*wire.sourceId.value));
}

}  // namespace

template <>
inline constexpr auto jsonFields<WireMember> =
    FieldList{fieldOr("mid", &WireMember::mid), fieldOr("code", &WireMember::code)};

template <>
inline constexpr auto jsonFields<WireSource> =
    FieldList{fieldOr("sourceId", &WireSource::sourceId), fieldOr("capAlertFeedStatus", &WireSource::status),
              fieldOr("authorityCountry", &WireSource::country)};

namespace json_detail {

static void readNumber(dom::object object, WireMember& out) {
  dom::element mid;
  Failure ignored;
  if (object["mid"].get(mid) == simdjson::SUCCESS) read(mid, out.number, ignored);
}

static void readNumber(dom::object, WireSource&) {}

template <class T>
static void gather(dom::element element, std::vector<T>& found, int depth) {
  constexpr int kDeepest = 8;
  if (depth > kDeepest) return;
  dom::array list;
  dom::object object;
  if (element.get(list) == simdjson::SUCCESS) {
    for (dom::element const member : list) gather(member, found, depth + 1);
  } else if (element.get(object) == simdjson::SUCCESS) {
    T one;
    Failure ignored;
    read(element, one, ignored);
    readNumber(object, one);
    if (isFound(one)) return found.push_back(std::move(one));
    for (auto const [key, member] : object) gather(member, found, depth + 1);
  }
}

}  // namespace json_detail

/// All objects of a document that could be a T.
template <class T>
static Result<std::vector<T>, DecodeError> foundIn(std::string_view body) {
  auto const root = json_detail::parseDocument(body);
  if (!root) return std::unexpected(root.error());
  std::vector<T> found;
  json_detail::gather(*root, found, 0);
  return found;
}

std::string countryOfWmoSource(std::string_view path) {
  for (Alias const& alias : kAliases) {
    if (path.starts_with(alias.source)) return std::string(alias.country);
  }
  constexpr std::size_t kLetters = 2;
  bool const isCountry =
      path.size() > kLetters && path[kLetters] == '-' && isLetter(path[0]) && isLetter(path[1]);
  return isCountry ? isoCountryCode(path.substr(0, kLetters)) : std::string();
}

bool isLeftOutWmoSource(std::string_view path) {
  return beginsWithOneOf(path, kLeftOut);
}

bool isDrawnByWmoCentre(std::string_view path) {
  return beginsWithOneOf(path, kDrawnByCentre);
}

Result<WmoMembers, DecodeError> parseWmoMembers(std::string_view body) {
  auto const found = foundIn<WireMember>(body);
  if (!found) return std::unexpected(found.error());
  WmoMembers members;
  for (WireMember const& wire : *found) {
    std::string country = alpha2CountryCode(trimmed(*wire.code.value));
    auto number = memberNumber(wire);
    if (!country.empty() && number) members.try_emplace(std::move(country), std::move(*number));
  }
  if (members.empty()) return std::unexpected(DecodeError{"", "no member of it has a country"});
  return members;
}

Result<std::vector<std::string>, DecodeError> parseWmoSources(std::string_view body) {
  auto const found = foundIn<WireSource>(body);
  if (!found) return std::unexpected(found.error());
  if (found->empty()) return std::unexpected(DecodeError{"", "no source is listed"});
  std::vector<std::string> countries;
  for (WireSource const& wire : *found) {
    std::string country = isOfUse(wire) ? countryOf(wire) : std::string();
    if (!country.empty() && !isIn(kNotMirrored, country)) countries.push_back(std::move(country));
  }
  if (countries.empty()) return std::unexpected(DecodeError{"", "no source of it operates"});
  std::ranges::sort(countries);
  auto const repeated = std::ranges::unique(countries);
  countries.erase(repeated.begin(), repeated.end());
  return countries;
}

std::optional<std::string> builtInWmoMember(std::string_view country) {
  constexpr std::size_t kDigits = 3;
  if (country.size() != 2) return std::nullopt;
  auto const at = kMembers.find(country);
  if (at == std::string_view::npos) return std::nullopt;
  return std::string(kMembers.substr(at + country.size(), kDigits));
}

std::vector<std::string> builtInWmoCountries() {
  std::vector<std::string> countries;
  for (std::string_view const country : split(kMirrored, ' ')) countries.emplace_back(country);
  return countries;
}

}  // namespace nimbara
