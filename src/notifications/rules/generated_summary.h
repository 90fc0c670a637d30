// The morning and evening summaries as a language model may word them: what it is sent and asked, and what of
// its reply is fit to be shown. Pure.
#pragma once

#include "notifications/rules/rule_inputs.h"

#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

enum class SummaryKind { morning, evening };

/// The weather of the place, as a reader of a weather brief would want it, and then the task. `isAhead`: the
/// summary will be shown on a later day than `inputs.now`.
std::string summaryPrompt(RuleInputs const& inputs, SummaryKind kind, bool isAhead);

/// The reply as plain prose that ends with a sentence: without fences, taken out of JSON, cut after its last
/// whole sentence and at a length that a notification shows. Nothing when no sentence is left.
std::optional<std::string> cleanedSummary(std::string_view reply);

}  // namespace nimbara
