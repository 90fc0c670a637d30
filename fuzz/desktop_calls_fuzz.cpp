// Any texts as what the session's bus brings: answers to notifications, and the words of a second start that
// the open window takes over. Lines of the input are its texts.

#include "app/notices/notification_call.h"
#include "app/settings/environment.h"
#include "base/text/clean_text.h"
#include "base/text/text.h"
#include "desktop/core/desktop_options.h"

#include <cstdint>
#include <cstdlib>

namespace {

using namespace nimbara;

/// Nothing that a notification service would refuse or take for markup.
void checkSendable(std::string_view text) {
  std::string const sent = markupEscaped(cleanText(text, 100, TextLines::many));
  bool const isBroken =
      sent.find_first_of("<>\x1B") != std::string::npos || cleanText(sent, 1000, TextLines::many) != sent;
  if (isBroken) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  std::string_view const bytes(reinterpret_cast<char const*>(data), size);
  std::vector<std::string> texts;
  for (std::string_view const text : split(bytes, '\n')) texts.emplace_back(text);
  texts.resize(std::max<std::size_t>(texts.size(), 3));
  static_cast<void>(notificationCall({texts[0], texts[1], texts[2]}));
  if (auto const call = notificationCall({texts[0], "default", texts[2]})) {
    auto const options = parseDesktopOptions(call->arguments, Environment{});
    if (!options && options.error().exitCode == 0) std::abort();  // no answer of ours asks for the help
  }
  static_cast<void>(parseDesktopOptions(texts, Environment{}));
  for (std::string const& text : texts) checkSendable(text);
  return 0;
}
