// A brief as a language model on the user's own machine words it: facts in, sentences out. What it says is
// shown only where every number of it stands in the facts.
#pragma once

#include "base/words/texts.h"
#include "platform/language_model.h"

#include <optional>
#include <stop_token>
#include <string>

namespace nimbara {

/// The task in English, the language to answer in by its own name, and the facts below.
std::string briefPrompt(std::string const& facts, Texts const& texts);

/// What of the reply is fit to be shown. Nothing where the model failed, or said nothing, or too much, or a
/// number that no fact has: then the facts themselves are shown. Blocks as long as the model may take.
std::optional<std::string> wordedBrief(std::string const& facts, Texts const& texts, LanguageModel& model,
                                       std::stop_token const& stop = {});

}  // namespace nimbara
