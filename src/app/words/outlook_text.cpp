#include "app/words/outlook_text.h"

#include "feeds/fetching/failure_words.h"

namespace nimbara {

std::string outlookNote(FeedReading<std::vector<OutlookDay>> const& reading, bool hasDays,
                        Texts const& texts) {
  if (hasDays) return std::string(texts.text("report.outlook.note"));
  if (!reading.failure) return std::string(texts.text("report.outlook.none"));
  return std::string(texts.text("report.outlook.failed")) + " " +
         texts.format("desktop.because", failureText(*reading.failure, texts));
}

}  // namespace nimbara
