// Answers that a service wants kept until they expire, so that it is asked no oftener than needed: in memory
// and, when a folder is named, in one file for each. Files that are missing, damaged or of another make count
// as absent. Owned by one client, which calls it in its own turn.
#pragma once

#include "base/json/json.h"
#include "base/result.h"
#include "base/time/instant.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace nimbara {

struct KeptAnswer {
  std::string lastModified;  ///< the header's text as it came; empty when there was none
  Instant fetched;
  Instant expires;
  std::string body;

  /// Not expired; and not from the future, where a clock that was set back puts it.
  bool isFresh(Instant now) const { return fetched <= now && now < expires; }
};

template <>
inline constexpr auto jsonFields<KeptAnswer> =
    FieldList{field("lastModified", &KeptAnswer::lastModified), field("fetched", &KeptAnswer::fetched),
              field("expires", &KeptAnswer::expires), field("body", &KeptAnswer::body)};

class KeptAnswers {
 public:
  /// Files are named by the digest of the key and `suffix`; no files without a folder.
  KeptAnswers(std::filesystem::path folder, std::string suffix)
      : folder_(std::move(folder)), suffix_(std::move(suffix)) {}

  std::optional<KeptAnswer> find(std::string const& key);
  /// The error is a sentence about the file; in memory the answer is kept all the same.
  Result<void, std::string> keep(std::string const& key, KeptAnswer answer);

 private:
  std::filesystem::path fileOf(std::string const& key) const;

  std::filesystem::path folder_;
  std::string suffix_;
  std::map<std::string, KeptAnswer> memory_;
};

}  // namespace nimbara
