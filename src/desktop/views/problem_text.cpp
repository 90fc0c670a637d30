#include "desktop/views/problem_text.h"

#include "feeds/fetching/failure_words.h"

namespace nimbara {

std::string storeText(std::optional<StoreError> const& problem, ViewContext const& context) {
  if (!problem) return {};
  switch (problem->kind) {
    case StoreError::Kind::unreadable:
      return context.text("desktop.store.unreadable");
    case StoreError::Kind::unwritable:
      return context.text("desktop.store.unwritable");
    case StoreError::Kind::busy:
      return context.text("desktop.store.busy");
    case StoreError::Kind::refused:
      return context.texts.format("desktop.store.refused", problem->message);
  }
  return {};
}

std::string becauseText(ServiceFailure const& failure, ViewContext const& context) {
  return context.texts.format("desktop.because", failureText(failure, context.texts));
}

}  // namespace nimbara
