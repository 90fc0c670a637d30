#include "app/state/weather_state.h"

#include "app/words/failure_text.h"

namespace nimbara {

AppError AppError::of(APIError const& error) {
  bool const isUnreachable = error.transport == HttpError::Kind::unresolvedHost ||
                             error.transport == HttpError::Kind::connectionFailed;
  if (isUnreachable) return {Case::offline, {}};
  std::string message = error.text();
  if (message.ends_with('.')) message.pop_back();
  return {Case::networkError, std::move(message), error};
}

std::string AppError::text(Texts const& texts) const {
  switch (kind) {
    case Case::networkError:
      return texts.format("error.networkError", cause ? failureText(*cause, texts) : message);
    case Case::noLocation:
      return std::string(texts.text("error.noLocation"));
    case Case::offline:
      return std::string(texts.text("error.offline"));
  }
  return {};
}

}  // namespace nimbara
