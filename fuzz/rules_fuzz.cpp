// Any bytes as the stored list of the user's own rules: what is read must be written and read again to the
// same list, and every rule must have its texts.

#include "notifications/custom/custom_rule_text.h"
#include "notifications/custom_notification.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  static nimbara::Texts const kTexts = nimbara::Texts::load("en");
  std::string_view const bytes(reinterpret_cast<char const*>(data), size);
  auto const list = nimbara::parseCustomNotifications(bytes);
  if (!list) return 0;
  auto const again = nimbara::parseCustomNotifications(nimbara::encodeCustomNotifications(*list));
  if (!again || again->rules != list->rules || again->unread != list->unread) std::abort();
  for (nimbara::CustomNotification const& rule : list->rules) {
    bool const hasTexts = !nimbara::ruleDescription(rule, nimbara::Units::imperial(), kTexts).empty() &&
                          !nimbara::ruleSchedule(rule, kTexts).empty();
    if (!hasTexts) std::abort();
  }
  return 0;
}
