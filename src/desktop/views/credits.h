// Whose data and work the program stands on, as the page of settings shows it. A table; the README says more.
#pragma once

#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"

#include <string>
#include <vector>

namespace nimbara {

struct CreditView {
  std::string name;
  std::string what;  ///< what it is for and under which licence
  std::string link;
  bool isFirst = false;  ///< of its kind
  std::string kind;
  std::string sentence;

  bool operator==(CreditView const&) const = default;
};

template <>
inline constexpr auto viewFields<CreditView> =
    FieldList{viewField("name", &CreditView::name), viewField("what", &CreditView::what),
              viewField("link", &CreditView::link), viewField("isFirst", &CreditView::isFirst),
              viewField("kind", &CreditView::kind), viewField("sentence", &CreditView::sentence)};

std::vector<CreditView> creditViews(ViewContext const& context);

}  // namespace nimbara
