#include "feeds/fetching/failure_words.h"

namespace nimbara {

namespace {

using Kind = ServiceFailure::Kind;

constexpr int kTooManyRequests = 429;

std::string plainText(ServiceFailure const& failure, Texts const& texts) {
  auto const worded = [&](std::string_view ending) {
    return std::string(texts.text("failure." + std::string(ending)));
  };
  // Of whatever kind it is, a sentence of its own says more.
  if (failure.transport == HttpError::Kind::protocol && !failure.detail.empty())
    return texts.format("failure.protocolBecause", failure.detail);
  if (failure.kind == Kind::network && failure.transport) return worded(enumName(*failure.transport));
  if (failure.kind != Kind::status) return worded(enumName(failure.kind));
  if (failure.status == kTooManyRequests) return worded("limit");
  return texts.format("failure.status", failure.status);
}

}  // namespace

std::string failureText(ServiceFailure const& failure, Texts const& texts) {
  std::string text = plainText(failure, texts);
  return failure.isOfWaters ? texts.format("failure.ofWaters", text) : text;
}

}  // namespace nimbara
