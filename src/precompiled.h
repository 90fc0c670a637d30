// The standard headers that nearly every source includes, and the records' JSON tables, compiled once.
// Sources still name what they use. This header and those of ours that it brings have guards: the compiler
// knows a "pragma once" by the file's time, which differs where the compiled header comes from the compiler's
// cache.
#ifndef NIMBARA_PRECOMPILED_H
#define NIMBARA_PRECOMPILED_H

#include "base/json/json.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <expected>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <numbers>
#include <optional>
#include <set>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>

#endif  // NIMBARA_PRECOMPILED_H
