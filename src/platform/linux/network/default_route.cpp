#include "platform/linux/network/default_route.h"

#include "base/text/text.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <linux/route.h>
#include <optional>
#include <string>
#include <vector>

namespace nimbara {

namespace {

std::vector<std::string_view> columnsOf(std::string_view line) {
  std::vector<std::string_view> columns;
  for (std::size_t at = 0; (at = line.find_first_not_of(" \t", at)) != std::string_view::npos;) {
    std::size_t const end = std::min(line.find_first_of(" \t", at), line.size());
    columns.push_back(line.substr(at, end - at));
    at = end;
  }
  return columns;
}

/// Nothing for what is no hexadecimal number.
std::optional<std::uint32_t> hexOf(std::string_view text) {
  std::uint32_t value = 0;
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

bool isZero(std::string_view digits) {
  return !digits.empty() && std::ranges::all_of(digits, [](char digit) { return digit == '0'; });
}

template <class IsDefault>
bool hasLine(std::string_view table, IsDefault const& isDefault) {
  return std::ranges::any_of(split(table, '\n'),
                             [&](std::string_view line) { return isDefault(columnsOf(line)); });
}

std::optional<std::string> readWhole(std::filesystem::path const& file) {
  std::ifstream stream(file);
  if (!stream) return std::nullopt;
  return std::string(std::istreambuf_iterator(stream), {});
}

}  // namespace

bool hasDefaultRouteV4(std::string_view table) {
  constexpr std::size_t kDestination = 1;
  constexpr std::size_t kFlags = 3;
  constexpr std::size_t kMask = 7;
  return hasLine(table, [](std::vector<std::string_view> const& columns) {
    if (columns.size() <= kMask) return false;
    std::uint32_t const flags = hexOf(columns[kFlags]).value_or(0);
    return isZero(columns[kDestination]) && isZero(columns[kMask]) && (flags & RTF_UP) != 0 &&
           (flags & RTF_REJECT) == 0;
  });
}

bool hasDefaultRouteV6(std::string_view table) {
  constexpr std::size_t kPrefixLength = 1;
  constexpr std::size_t kFlags = 8;
  return hasLine(table, [](std::vector<std::string_view> const& columns) {
    if (columns.size() <= kFlags) return false;
    std::uint32_t const flags = hexOf(columns[kFlags]).value_or(0);
    return isZero(columns[0]) && isZero(columns[kPrefixLength]) && (flags & RTF_UP) != 0 &&
           (flags & RTF_REJECT) == 0;
  });
}

bool hasDefaultRoute(std::filesystem::path const& folder) {
  auto const v4 = readWhole(folder / "route");
  auto const v6 = readWhole(folder / "ipv6_route");
  if (!v4 && !v6) return true;
  return (v4 && hasDefaultRouteV4(*v4)) || (v6 && hasDefaultRouteV6(*v6));
}

}  // namespace nimbara
