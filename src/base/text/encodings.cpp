#include "base/text/encodings.h"

#include "base/text/text.h"

#include <unicode/ucnv.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>

namespace nimbara {

namespace {

struct Name {
  std::string_view declared;
  char const* meant;
};

constexpr auto kNames = std::to_array<Name>({
    {"iso-8859-1", "windows-1252"},
    {"iso8859-1", "windows-1252"},
    {"iso_8859-1", "windows-1252"},
    {"latin1", "windows-1252"},
    {"iso-8859-9", "windows-1254"},
    {"iso-8859-11", "windows-874"},
    {"tis-620", "windows-874"},
    {"gb2312", "gb18030"},
    {"gbk", "gb18030"},
    {"gb18030", "gb18030"},
    {"big5", "windows-950"},
    {"shift_jis", "windows-31j"},
    {"euc-kr", "windows-949"},
    {"ks_c_5601-1987", "windows-949"},
});

/// Of names that ICU has the same meaning for. It looks for files by a name that it does not know, so nothing
/// else reaches it.
constexpr std::array<std::string_view, 7> kFamilies{"windows-125", "cp125", "windows-874", "iso-8859-",
                                                    "iso8859-",    "koi8-", "euc-jp"};

std::string meantBy(std::string_view encoding) {
  std::string const name = asciiLowered(encoding);
  auto const* const known = std::ranges::find(kNames, name, &Name::declared);
  if (known != kNames.end()) return known->meant;
  bool const isUsual =
      std::ranges::any_of(kFamilies, [&](std::string_view family) { return name.starts_with(family); });
  bool const isPlain = name.size() <= 16 &&
                       name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-") == std::string::npos;
  return isUsual && isPlain ? name : std::string();
}

}  // namespace

std::optional<std::string> utf8Of(std::string_view bytes, std::string_view encoding) {
  std::string const name = meantBy(encoding);
  if (name.empty() || bytes.size() > std::size_t{std::numeric_limits<std::int32_t>::max()}) return {};
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<UConverter, decltype(&ucnv_close)> const converter(ucnv_open(name.c_str(), &status),
                                                                     &ucnv_close);
  if (U_FAILURE(status)) return {};
  icu::UnicodeString const text(bytes.data(), static_cast<std::int32_t>(bytes.size()), converter.get(),
                                status);
  if (U_FAILURE(status) || text.isBogus()) return {};
  std::string utf8;
  utf8.reserve(bytes.size());
  text.toUTF8String(utf8);
  return utf8;
}

}  // namespace nimbara
