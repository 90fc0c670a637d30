// One country's feed of warnings, asked for at most every five minutes and kept in memory: in Atom, and where
// that fails as a list in JSON. Owned by the service of all countries. Any thread may ask; who comes while
// another one asks waits for the same answer. With a folder all processes that share it ask as one. Never
// throws; a failure leaves what was known before.
#pragma once

#include "base/files/file_lock.h"
#include "feeds/meteoalarm/meteo_alarm_feed_form.h"

#include <array>
#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <string_view>

namespace nimbara {

class MeteoAlarmCountryFeed {
 public:
  struct Answer {
    std::shared_ptr<MeteoAlarmContent const> content;  ///< null until the service has answered
    /// The last that had messages whole: they never change, so that they serve entries of either form.
    std::shared_ptr<MeteoAlarmContent const> messages;
    std::optional<Instant> checkedAt;       ///< when the service confirmed the content
    std::optional<ServiceFailure> failure;  ///< why it could not be confirmed just now
  };

  struct Addresses {
    std::string atom;
    std::string json;
    std::string documents;  ///< begins the public addresses of messages, ends in "/"
  };

  /// `file` is where the forms are kept, without an ending; empty: nothing outlives the process.
  MeteoAlarmCountryFeed(HttpClient& http, Clock const& clock, Addresses const& addresses,
                        std::filesystem::path file);

  Answer get(std::stop_token const& stop);

 private:
  struct Asked {
    MeteoAlarmFeedForm const* form = nullptr;  ///< that answered
    std::optional<ServiceFailure> failure;     ///< of the first that did not
  };

  bool isFresh() const;
  Asked ask(std::stop_token const& stop);
  Asked askForms(std::stop_token const& stop);
  std::optional<Asked> shared();
  MeteoAlarmFeedForm const* latestForm() const;
  std::unique_ptr<FileLock> waitForOthers(std::stop_token const& stop) const;
  Answer known() const { return {content_, messages_, lastFetchDate_, failure_}; }

  HttpClient& http_;
  Clock const& clock_;
  std::filesystem::path file_;

  std::mutex mutex_;  // of all below; not held while the service is asked
  std::condition_variable_any answered_;
  bool isAsking_ = false;
  std::array<MeteoAlarmFeedForm, 2> forms_;  ///< in the order of asking; while somebody asks they are his
  std::shared_ptr<MeteoAlarmContent const> content_;
  std::shared_ptr<MeteoAlarmContent const> messages_;
  std::optional<Instant> lastFetchDate_;
  std::optional<ServiceFailure> failure_;  ///< of the last request
};

}  // namespace nimbara
