#include "base/text/text.h"

#include "base/text/clean_text.h"
#include "base/text/utf8.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::string_view kBlanks = " \t\r\n\f\v";

bool isControlOrBlank(char32_t character) {
  return isControl(character) || character == ' ' || character == 0x2028 || character == 0x2029;
}

bool continuesCharacter(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  auto const first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string asciiLowered(std::string_view text) {
  std::string lowered(text);
  std::ranges::transform(lowered, lowered.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return lowered;
}

std::string asciiUppered(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return upper;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (auto end = text.find(separator); end != std::string_view::npos; end = text.find(separator)) {
    parts.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  parts.push_back(text);
  return parts;
}

std::string oneLine(std::string_view text, std::size_t limit) {
  std::string line;
  text = trimmed(text);
  while (!text.empty() && line.size() <= limit + 4) {
    char32_t const character = takeCharacter(text);
    if (!isControlOrBlank(character)) {
      appendCharacter(line, character);
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  while (line.ends_with(' ')) line.pop_back();
  if (line.size() <= limit) return directionsBalanced(line);
  std::size_t cut = limit;
  while (cut > 0 && continuesCharacter(line[cut])) --cut;
  return directionsBalanced(line.substr(0, cut) + "…");
}

std::string percentEncoded(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  constexpr std::string_view kUnreserved =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
  std::string out;
  for (char const c : text) {
    if (kUnreserved.find(c) != std::string_view::npos) {
      out += c;
      continue;
    }
    auto const byte = static_cast<unsigned char>(c);
    out += '%';
    out += kDigits[byte >> 4];
    out += kDigits[byte & 15];
  }
  return out;
}

}  // namespace nimbara
