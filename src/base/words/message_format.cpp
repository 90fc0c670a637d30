#include "base/words/message_format.h"

#include "base/text/number.h"

#include <algorithm>
#include <optional>

namespace nimbara {

namespace {

/// One "%…" of a pattern: which argument (absent: the next in order), the decimals of "%.Nf", the letter.
struct Placeholder {
  std::optional<std::size_t> position;  // counts from 1
  int decimals = 6;
  char kind = '\0';
  std::size_t length = 0;
};

std::size_t digitsEnd(std::string_view text, std::size_t from) {
  while (from < text.size() && text[from] >= '0' && text[from] <= '9') ++from;
  return from;
}

std::optional<int> shortNumber(std::string_view text) {
  return text.size() <= 2 ? parseInteger(text) : std::nullopt;
}

/// Reads the placeholder at the front of `text`, which begins with "%". Nothing when it is none that we know.
std::optional<Placeholder> readPlaceholder(std::string_view text) {
  Placeholder found;
  std::size_t at = 1;
  std::size_t end = digitsEnd(text, at);
  if (end > at && end < text.size() && text[end] == '$') {
    auto const position = shortNumber(text.substr(at, end - at));
    if (!position || *position == 0) return std::nullopt;
    found.position = static_cast<std::size_t>(*position);
    at = end + 1;
  }
  if (at < text.size() && text[at] == '.') {
    end = digitsEnd(text, at + 1);
    auto const decimals = shortNumber(text.substr(at + 1, end - at - 1));
    if (!decimals || *decimals > 9 || end >= text.size() || text[end] != 'f') return std::nullopt;
    found.decimals = *decimals;
    at = end;
  }
  if (at >= text.size() || std::string_view("@df%").find(text[at]) == std::string_view::npos)
    return std::nullopt;
  if (text[at] == '%' && at != 1) return std::nullopt;
  found.kind = text[at];
  found.length = at + 1;
  return found;
}

std::string localized(std::string number, std::string_view decimalPoint) {
  if (auto const point = number.find('.'); point != std::string::npos) number.replace(point, 1, decimalPoint);
  return number;
}

struct Renderer {
  Placeholder const& placeholder;
  std::string_view decimalPoint;

  std::string operator()(std::string const& text) const { return text; }
  std::string operator()(std::int64_t number) const {
    return placeholder.kind == 'f' ? (*this)(static_cast<double>(number)) : std::to_string(number);
  }
  std::string operator()(double number) const {
    if (placeholder.kind == 'd') return std::to_string(truncatedInteger(number));
    if (placeholder.kind == '@') return localized(plainDecimal(number), decimalPoint);
    return localized(fixedDecimal(number, placeholder.decimals), decimalPoint);
  }
};

}  // namespace

std::string formatMessage(std::string_view pattern, std::span<MessageArgument const> arguments,
                          std::string_view decimalPoint) {
  std::string out;
  std::size_t next = 0;
  while (!pattern.empty()) {
    auto const percent = std::min(pattern.find('%'), pattern.size());
    out += pattern.substr(0, percent);
    pattern.remove_prefix(percent);
    if (pattern.empty()) break;
    auto const placeholder = readPlaceholder(pattern);
    std::size_t const length = placeholder ? placeholder->length : 1;
    if (placeholder && placeholder->kind == '%') {
      out += '%';
    } else {
      std::size_t const index = !placeholder            ? arguments.size()
                                : placeholder->position ? *placeholder->position - 1
                                                        : next++;
      if (index < arguments.size()) {
        out += std::visit(Renderer{*placeholder, decimalPoint}, arguments[index].value());
      } else {
        out += pattern.substr(0, length);
      }
    }
    pattern.remove_prefix(length);
  }
  return out;
}

std::vector<std::string> placeholders(std::string_view pattern) {
  std::vector<std::string> found;
  std::size_t next = 1;
  for (auto at = pattern.find('%'); at != std::string_view::npos; at = pattern.find('%', at)) {
    auto const placeholder = readPlaceholder(pattern.substr(at));
    if (placeholder && placeholder->kind != '%') {
      std::string_view const text = pattern.substr(at, placeholder->length);
      std::size_t const position = placeholder->position ? *placeholder->position : next++;
      auto const dollar = text.find('$');
      found.push_back(std::to_string(position) + "$" +
                      std::string(text.substr(dollar == std::string_view::npos ? 1 : dollar + 1)));
    }
    at += placeholder ? placeholder->length : 1;
  }
  std::ranges::sort(found);
  return found;
}

}  // namespace nimbara
