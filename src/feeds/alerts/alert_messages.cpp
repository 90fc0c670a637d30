#include "feeds/alerts/alert_messages.h"

#include "base/text/clean_text.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::size_t kMostMessages = 20;
constexpr std::size_t kMostReferences = 50;
constexpr std::size_t kMostCodes = 200;
constexpr std::size_t kLongestWord = 300;

template <class List>
void shorten(List& list, std::size_t most) {
  if (list.size() > most) list.erase(list.begin() + static_cast<std::ptrdiff_t>(most), list.end());
}

void clean(WarningMessage& message) {
  shorten(message.references, kMostReferences);
  shorten(message.codes, kMostCodes);
  auto const cleaned = [](std::string& text) { text = cleanText(text, kLongestWord, TextLines::one); };
  for (auto* const text : {&message.identifier, &message.sender, &message.status, &message.type})
    cleaned(*text);
  for (WarningReference& reference : message.references) {
    cleaned(reference.sender);
    cleaned(reference.identifier);
  }
  for (WarningCode& code : message.codes) {
    cleaned(code.registry);
    cleaned(code.code);
  }
}

}  // namespace

WarningMessage warningMessage(CapAlert const& message) {
  WarningMessage made{
      message.identifier, message.sender, message.sent, message.status, message.msgType, {}, {}};
  for (CapReference const& reference : message.references)
    made.references.push_back({reference.sender, reference.identifier, reference.sent});
  for (CapInfo const& info : message.infos) {
    for (CapArea const& area : info.areas) {
      for (CapValue const& code : area.geocodes) addCode(made, code.name, code.value);
    }
  }
  return made;
}

void addMessage(WeatherAlert& alert, WarningMessage message) {
  if (message.identifier.empty()) return;
  clean(message);
  if (!alert.messages) alert.messages.emplace();
  auto const same = std::ranges::find_if(*alert.messages, [&](WarningMessage const& known) {
    return known.identifier == message.identifier && known.sender == message.sender;
  });
  if (same == alert.messages->end()) {
    if (alert.messages->size() < kMostMessages) alert.messages->push_back(std::move(message));
    return;
  }
  for (WarningCode const& code : message.codes) addCode(*same, code.registry, code.code);
}

void addCode(WarningMessage& message, std::string_view registry, std::string_view code) {
  WarningCode made{std::string(registry), std::string(code)};
  bool const isNew = message.codes.size() < kMostCodes && std::ranges::count(message.codes, made) == 0;
  if (isNew && !code.empty()) message.codes.push_back(std::move(made));
}

}  // namespace nimbara
