#include "feeds/fetching/plain_text.h"

#include "base/text/clean_text.h"
#include "base/text/text.h"
#include "base/text/utf8.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>

namespace nimbara {

namespace {

struct Entity {
  std::string_view name;
  std::string_view text;
};

constexpr Entity kEntities[] = {
    {"amp", "&"},    {"lt", "<"},     {"gt", ">"},     {"quot", "\""},  {"apos", "'"},   {"nbsp", " "},
    {"rsquo", "’"},  {"lsquo", "‘"},  {"rdquo", "”"},  {"ldquo", "“"},  {"ndash", "–"},  {"mdash", "—"},
    {"hellip", "…"}, {"bull", "•"},   {"middot", "·"}, {"deg", "°"},    {"copy", "©"},   {"reg", "®"},
    {"aacute", "á"}, {"eacute", "é"}, {"iacute", "í"}, {"oacute", "ó"}, {"uacute", "ú"}, {"ntilde", "ñ"},
    {"Aacute", "Á"}, {"Eacute", "É"}, {"Iacute", "Í"}, {"Oacute", "Ó"}, {"Uacute", "Ú"}, {"atilde", "ã"},
    {"agrave", "à"}, {"egrave", "è"}, {"acirc", "â"},  {"ecirc", "ê"},  {"ocirc", "ô"},  {"icirc", "î"},
    {"ccedil", "ç"}, {"auml", "ä"},   {"ouml", "ö"},   {"uuml", "ü"},   {"euml", "ë"},   {"iuml", "ï"},
    {"otilde", "õ"}, {"szlig", "ß"},  {"oslash", "ø"}, {"aring", "å"},  {"euro", "€"},   {"pound", "£"},
};

/// Elements that begin and end a line.
constexpr std::string_view kLineTags[] = {"p",  "br", "div", "li", "ul", "ol", "h1",
                                          "h2", "h3", "h4",  "h5", "h6", "tr", "table"};
/// Elements whose content is no text.
constexpr std::string_view kHiddenTags[] = {"script", "style"};

bool isScalar(std::uint32_t code) {
  return code >= 0x20 && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

std::string utf8(std::uint32_t code) {
  std::string out;
  appendCharacter(out, code);
  return out;
}

/// The character of "#8217", "#x2019" or "rsquo".
std::optional<std::string> entityText(std::string_view name) {
  if (name.starts_with('#')) {
    bool const isHex = name.size() > 1 && (name[1] == 'x' || name[1] == 'X');
    std::string_view const digits = name.substr(isHex ? 2 : 1);
    std::uint32_t code = 0;
    auto const read = std::from_chars(digits.data(), digits.data() + digits.size(), code, isHex ? 16 : 10);
    bool const isWhole =
        !digits.empty() && read.ec == std::errc() && read.ptr == digits.data() + digits.size();
    if (!isWhole) return std::nullopt;
    return code == 0xA0 || !isScalar(code) ? " " : utf8(code);
  }
  auto const* const entity = std::ranges::find(kEntities, name, &Entity::name);
  return entity == std::end(kEntities) ? std::nullopt : std::optional(std::string(entity->text));
}

class Reader {
 public:
  explicit Reader(std::string_view html) : html_(html) {}

  std::string read() {
    while (at_ < html_.size()) {
      html_[at_] == '<' ? tag() : html_[at_] == '&' ? entity() : plain(html_[at_++]);
    }
    endLine();
    return std::move(out_);
  }

 private:
  void plain(char c) {
    bool const isBlank =
        c == ' ' || c == '\n' || c == '\t' || c == '\r' || static_cast<unsigned char>(c) < 0x20;
    if (!isBlank) {
      line_ += c;
    } else if (!line_.empty() && line_.back() != ' ') {
      line_ += ' ';
    }
  }

  void endLine() {
    std::string_view const line = trimmed(line_);
    if (!line.empty()) out_ += (out_.empty() ? "" : "\n") + std::string(line);
    line_.clear();
  }

  void entity() {
    constexpr std::size_t kLongest = 10;
    std::size_t const end = html_.substr(at_, kLongest + 2).find(';');
    auto const text =
        end == std::string_view::npos ? std::nullopt : entityText(html_.substr(at_ + 1, end - 1));
    if (!text) return plain(html_[at_++]);
    for (char const c : *text) plain(c);
    at_ += end + 1;
  }

  /// "<" that begins no tag is text.
  void tag() {
    if (html_.substr(at_).starts_with("<!--")) return skipPast("-->");
    std::string_view rest = html_.substr(at_ + 1);
    if (rest.starts_with('/')) rest.remove_prefix(1);
    auto const isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    if (rest.empty() || (!isLetter(rest[0]) && rest[0] != '!')) return plain(html_[at_++]);
    std::size_t length = 0;
    while (length < rest.size() && (isLetter(rest[length]) || (rest[length] >= '0' && rest[length] <= '9')))
      ++length;
    std::string const name = asciiLowered(rest.substr(0, length));
    bool const isEnd = html_[at_ + 1] == '/';
    if (std::ranges::find(kLineTags, name) != std::end(kLineTags)) endLine();
    skipPast(">");
    bool const isHidden = std::ranges::find(kHiddenTags, name) != std::end(kHiddenTags);
    if (isHidden && !isEnd) skipPast("</" + name);
  }

  void skipPast(std::string_view text) {
    std::size_t const found = html_.find(text, at_);
    at_ = found == std::string_view::npos ? html_.size() : found + text.size();
    // What is left of an end tag.
    if (text.starts_with("</")) skipPast(">");
  }

  std::string_view html_;
  std::size_t at_ = 0;
  std::string line_;
  std::string out_;
};

}  // namespace

std::string plainTextOfHtml(std::string_view html, std::size_t limit) {
  std::string text = withoutControls(Reader(html).read());
  if (text.size() <= limit) return text;
  while (limit > 0 && (static_cast<unsigned char>(text[limit]) & 0xC0) == 0x80) --limit;
  text.resize(limit);
  return text;
}

}  // namespace nimbara
