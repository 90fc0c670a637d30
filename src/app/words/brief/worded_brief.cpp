#include "app/words/brief/worded_brief.h"

#include "analysis/brief/stated_numbers.h"
#include "notifications/rules/generated_summary.h"

#include <algorithm>

namespace nimbara {

namespace {

/// So much longer than the facts a text may be.
constexpr std::size_t kLongestRatio = 2;

std::string_view nameOf(std::string_view code) {
  auto const& languages = Texts::languages();
  auto const found = std::ranges::find(languages, code, &Texts::Language::code);
  return found == languages.end() ? "English" : std::string_view(found->name);
}

}  // namespace

std::string briefPrompt(std::string const& facts, Texts const& texts) {
  return "You are a weather forecaster. Say what follows in three to five short, friendly sentences. Answer "
         "in " +
         std::string(nameOf(texts.language())) +
         ". Use only these facts: add no number, no time, no place and no advice that is not in them, and "
         "write "
         "numbers in digits. Reply with plain prose only.\n\n" +
         facts + "\n";
}

std::optional<std::string> wordedBrief(std::string const& facts, Texts const& texts, LanguageModel& model,
                                       std::stop_token const& stop) {
  if (facts.empty() || !model.isThere()) return std::nullopt;
  auto const reply = model.reply(briefPrompt(facts, texts), stop);
  if (!reply) return std::nullopt;
  auto text = cleanedSummary(*reply);
  bool const isFit = text && text->size() <= kLongestRatio * facts.size() &&
                     hasOnlyNumbersOf(*text, facts, texts.language());
  return isFit ? text : std::nullopt;
}

}  // namespace nimbara
