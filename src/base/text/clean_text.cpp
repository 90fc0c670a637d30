#include "base/text/clean_text.h"

#include "base/text/utf8.h"

#include <algorithm>
#include <vector>

namespace nimbara {

namespace {

/// Noncharacters, which the bus library refuses.
bool maySend(char32_t character) {
  return !((character >= 0xFDD0 && character <= 0xFDEF) || (character & 0xFFFE) == 0xFFFE);
}

bool breaksLine(char32_t character) {
  return character == '\n' || character == 0x85 || character == 0x2028 || character == 0x2029;
}

bool isPrintableAscii(char c) {
  return c >= 0x20 && c < 0x7F;
}

/// What begins or ends a writing direction, by the roles of Unicode's annex 9.
enum class Direction { none, embedding, override, popEmbedding, isolate, popIsolate };

Direction directionOf(char32_t character) {
  if (character == 0x202A || character == 0x202B) return Direction::embedding;
  if (character == 0x202C) return Direction::popEmbedding;
  if (character == 0x202D || character == 0x202E) return Direction::override;
  if (character >= 0x2066 && character <= 0x2068) return Direction::isolate;
  return character == 0x2069 ? Direction::popIsolate : Direction::none;
}

class Balance {
 public:
  std::string of(std::string_view text) {
    while (!text.empty()) {
      std::string_view const rest = text;
      char32_t const character = takeCharacter(text);
      take(character, rest.substr(0, rest.size() - text.size()));
    }
    closeAll();
    return std::move(out_);
  }

 private:
  /// Deeper nesting than readers know of.
  static constexpr std::size_t kDeepest = 60;

  void take(char32_t character, std::string_view bytes) {
    Direction const direction = directionOf(character);
    if (breaksLine(character)) closeAll();
    if (direction == Direction::none) {
      out_ += bytes;
    } else if (direction == Direction::popEmbedding || direction == Direction::popIsolate) {
      close(direction);
    } else if (open_.size() < kDeepest) {
      open_.push_back(direction);
      if (direction != Direction::override) out_ += bytes;
    }
  }

  /// The end of an isolate ends what was begun within; that of an embedding reaches no farther than an
  /// isolate.
  void close(Direction direction) {
    if (direction == Direction::popEmbedding) {
      if (!open_.empty() && open_.back() != Direction::isolate) pop();
      return;
    }
    if (std::ranges::find(open_, Direction::isolate) == open_.end()) return;
    while (open_.back() != Direction::isolate) pop();
    pop();
  }

  void pop() {
    if (open_.back() == Direction::embedding) appendCharacter(out_, 0x202C);
    if (open_.back() == Direction::isolate) appendCharacter(out_, 0x2069);
    open_.pop_back();
  }

  void closeAll() {
    while (!open_.empty()) pop();
  }

  std::vector<Direction> open_;
  std::string out_;
};

/// A sequence that sets colours ("ESC [ 1;31 m"), at the front of `text`; 0 where there is none.
std::size_t colourSequence(std::string_view text) {
  if (!text.starts_with("\x1b[")) return 0;
  std::size_t const end = text.find_first_not_of("0123456789;", 2);
  return end != std::string_view::npos && text[end] == 'm' ? end + 1 : 0;
}

}  // namespace

std::string directionsBalanced(std::string_view text) {
  // All of them are E2 80 xx or E2 81 xx.
  if (text.find("\xE2\x80") == std::string_view::npos && text.find("\xE2\x81") == std::string_view::npos)
    return std::string(text);
  return Balance().of(text);
}

std::string cleanText(std::string_view text, std::size_t limit, TextLines lines) {
  if (text.size() <= limit && std::ranges::all_of(text, isPrintableAscii)) return std::string(text);
  std::string out;
  std::size_t lastAt = 0;  // where the last character that may stay begins
  for (std::size_t count = 0; !text.empty();) {
    char32_t character = takeCharacter(text);
    if (!maySend(character)) character = kReplacementCharacter;
    if (breaksLine(character)) character = lines == TextLines::many ? '\n' : ' ';
    if (character == '\t') character = ' ';
    if (character != '\n' && isControl(character)) continue;
    if (count == limit) {
      out.resize(lastAt);
      out += "…";
      break;
    }
    lastAt = out.size();
    appendCharacter(out, character);
    ++count;
  }
  return directionsBalanced(out);
}

std::string withoutControls(std::string_view text) {
  auto const mayStay = [](char32_t c) { return !isControl(c) || c == '\n' || c == '\r' || c == '\t'; };
  auto const isPlain = [](char c) { return isPrintableAscii(c) || c == '\n' || c == '\r' || c == '\t'; };
  if (std::ranges::all_of(text, isPlain)) return std::string(text);
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    char32_t const character = takeCharacter(text);
    if (mayStay(character)) appendCharacter(out, character);
  }
  return directionsBalanced(out);
}

std::string terminalText(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    std::size_t const plain =
        static_cast<std::size_t>(std::ranges::find_if_not(text, isPrintableAscii) - text.begin());
    std::size_t const kept = plain > 0 ? plain : colourSequence(text);
    out += text.substr(0, kept);
    text.remove_prefix(kept);
    if (kept > 0) continue;
    std::string_view const rest = text;
    char32_t const character = takeCharacter(text);
    // What is no UTF-8 may be a file's name, and is passed on but for what a terminal would obey.
    bool const isByte = character == kReplacementCharacter && rest.size() - text.size() == 1;
    bool const isObeyed = isByte ? static_cast<unsigned char>(rest[0]) < 0xA0
                                 : isControl(character) && character != '\n' && character != '\t';
    if (!isObeyed) out += rest.substr(0, rest.size() - text.size());
  }
  return out;
}

std::string markupEscaped(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char const letter : text) {
    switch (letter) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      default:
        out += letter;
    }
  }
  return out;
}

}  // namespace nimbara
