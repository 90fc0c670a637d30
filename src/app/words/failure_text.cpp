#include "app/words/failure_text.h"

namespace nimbara {

namespace {

constexpr int kTooManyRequests = 429;

std::string worded(std::string_view ending, Texts const& texts) {
  return std::string(texts.text("failure." + std::string(ending)));
}

std::string networkText(APIError const& error, Texts const& texts) {
  if (error.isRefusal()) return worded("refusal", texts);
  // Of whatever kind it is, a sentence of its own says more.
  if (error.transport == HttpError::Kind::protocol && !error.detail.empty())
    return texts.format("failure.protocolBecause", error.detail);
  return error.transport ? worded(enumName(*error.transport), texts) : error.detail;
}

std::string statusText(APIError const& error, Texts const& texts) {
  if (error.statusCode == kTooManyRequests) return worded("limit", texts);
  if (error.detail.empty()) return texts.format("failure.status", error.statusCode);
  return texts.format("failure.statusBecause", error.statusCode, error.detail);
}

}  // namespace

std::string failureText(APIError const& error, Texts const& texts) {
  switch (error.kind) {
    case APIError::Case::networkError:
      return networkText(error, texts);
    case APIError::Case::decodingError:
      return worded("unreadable", texts);
    case APIError::Case::httpError:
      return statusText(error, texts);
    case APIError::Case::invalidURL:
      return worded("invalidUrl", texts);
    case APIError::Case::noData:
      return worded("noData", texts);
    case APIError::Case::noResults:
      return worded("noResults", texts);
  }
  return {};
}

}  // namespace nimbara
