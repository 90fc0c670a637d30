#include "desktop/views/problem_text.h"

#include "feeds/fetching/feed_problem.h"

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

std::string becauseText(std::string_view problem, ViewContext const& context) {
  return context.texts.format("desktop.because", problemText(problem, context.texts));
}

}  // namespace nimbara
