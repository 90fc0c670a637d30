#include "platform/linux/dbus/service/call_gate.h"

#include "base/text/clean_text.h"

namespace nimbara {

namespace {

void requireShort(std::string const& text) {
  if (text.size() > CallGate::kLongestText)
    throw sdbus::Error("org.freedesktop.DBus.Error.InvalidArgs", "the text is too long");
}

}  // namespace

void CallGate::admit(sdbus::IObject const& object) {
  sdbus::Message const* const message = object.getCurrentlyProcessedMessage();
  std::string const caller = message == nullptr ? std::string() : message->getSender();
  if (!budget_.take(caller, std::chrono::steady_clock::now()))
    throw sdbus::Error("org.freedesktop.DBus.Error.LimitsExceeded", "too many calls; try again later");
}

void CallGate::admit(sdbus::IObject const& object, std::string const& text) {
  admit(object);
  requireShort(text);
}

void CallGate::admit(sdbus::IObject const& object, std::vector<std::string> const& texts) {
  admit(object);
  if (texts.size() > kMostTexts)
    throw sdbus::Error("org.freedesktop.DBus.Error.InvalidArgs", "too many texts at once");
  for (std::string const& text : texts) requireShort(text);
}

std::string textForBus(std::string const& text) {
  return cleanText(text, kTextLimit, TextLines::many);
}

std::string tokenForUse(std::string const& token) {
  return token.size() <= CallGate::kLongestToken ? token : std::string();
}

}  // namespace nimbara
