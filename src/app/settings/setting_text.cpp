#include "app/settings/setting_text.h"

#include "base/text/number.h"

namespace nimbara {

std::string settingText(SettingValue const& value) {
  struct Text {
    std::string operator()(bool flag) const { return flag ? "true" : "false"; }
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(double number) const { return plainDecimal(number); }
    std::string operator()(std::string const& text) const { return text; }
  };
  return std::visit(Text{}, value);
}

}  // namespace nimbara
