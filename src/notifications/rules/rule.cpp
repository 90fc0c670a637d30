#include "notifications/rules/rule.h"

namespace nimbara {

bool Measurement::holds() const {
  switch (needs) {
    case Relation::atLeast:
      return value >= limit;
    case Relation::above:
      return value > limit;
    case Relation::atMost:
      return value <= limit;
    case Relation::below:
      return value < limit;
  }
  return false;
}

}  // namespace nimbara
