#include "base/words/moment_text.h"

namespace nimbara {

std::string momentText(std::string_view key, Instant moment, Instant now, TimeWords const& words,
                       Texts const& texts) {
  std::string const clock = words.clock(moment);
  std::string day = words.moment(moment, now);
  if (day == clock) return texts.format(key, clock);
  day.resize(day.size() - clock.size() - 1);  // a blank stands between them
  return texts.format(std::string(key) + ".day", day, clock);
}

}  // namespace nimbara
