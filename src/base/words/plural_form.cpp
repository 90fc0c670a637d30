#include "base/words/plural_form.h"

#include <unicode/plurrule.h>

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>

namespace nimbara {

namespace {

icu::PluralRules const* rulesOf(std::string_view locale) {
  static std::mutex mutex;
  static std::map<std::string, std::unique_ptr<icu::PluralRules>, std::less<>> known;
  std::lock_guard const lock(mutex);
  auto found = known.find(locale);
  if (found == known.end()) {
    std::string name(locale);
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::PluralRules> rules(icu::PluralRules::forLocale(icu::Locale(name.c_str()), status));
    if (U_FAILURE(status)) rules.reset();
    found = known.emplace(std::move(name), std::move(rules)).first;
  }
  return found->second.get();
}

}  // namespace

std::string pluralForm(std::string_view locale, std::int64_t count) {
  icu::PluralRules const* const rules = rulesOf(locale);
  std::string form = "other";
  if (rules == nullptr) return form;
  form.clear();
  return rules->select(static_cast<double>(count)).toUTF8String(form);
}

std::string specialForms(std::string_view locale) {
  // The numbers that texts count stay below; millions have a form of their own in some languages.
  constexpr std::int64_t kNumbers = 201;
  std::map<std::string, int, std::less<>> numbers;
  for (std::int64_t number = 0; number < kNumbers; ++number) ++numbers[pluralForm(locale, number)];
  auto const usual =
      std::ranges::max_element(numbers, {}, [](auto const& form) { return form.second; })->first;
  std::string forms;
  for (char const* const form : {"zero", "one", "two", "few", "many", "other"}) {
    if (form != usual && numbers.contains(form)) forms.append(forms.empty() ? "" : " ").append(form);
  }
  return forms;
}

}  // namespace nimbara
