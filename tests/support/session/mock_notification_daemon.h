// A notification service on a test's bus that keeps what it is told, answers as a test wants, and lets the
// test play the person in front of the screen.
#pragma once

#include "support/session/private_bus.h"

#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <sdbus-c++/sdbus-c++.h>
#include <string>
#include <vector>

namespace nimbara::test {

struct ShownNotification {
  std::string program;
  std::uint32_t replaces = 0;
  std::string icon;
  std::string summary;
  std::string body;
  std::vector<std::string> actions;
  std::map<std::string, sdbus::Variant> hints;
  std::int32_t expireTimeout = 0;
  std::uint32_t id = 0;  ///< what was answered

  std::string text(std::string const& hint) const { return hints.at(hint).get<std::string>(); }
};

struct DaemonScript {
  enum class Notify { answers, refuses, waits, answersWrongly };

  std::vector<std::string> capabilities{"actions", "body", "body-markup", "sound"};
  bool knowsCapabilities = true;
  Notify notify = Notify::answers;
  std::uint32_t firstId = 1;
};

class MockNotificationDaemon {
 public:
  MockNotificationDaemon(PrivateBus const& bus, DaemonScript script);
  ~MockNotificationDaemon();

  /// What was shown once there are `count` of them; fewer after a long time.
  std::vector<ShownNotification> wait(std::size_t count);
  /// The like of the notifications that the program took back.
  std::vector<std::uint32_t> waitForWithdrawn(std::size_t count);
  int capabilityQuestions() const;

  /// Answers what waits, and everything from now on.
  void answerAtLast();
  void close(std::uint32_t id);
  void click(std::uint32_t id, std::string const& action, std::string const& token = {});

 private:
  using Reply = sdbus::Result<std::uint32_t>;

  std::vector<std::string> capabilities();
  void notify(Reply&& reply, ShownNotification shown);
  void describe();

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  DaemonScript script_;
  int capabilityQuestions_ = 0;
  std::uint32_t nextId_;
  std::vector<ShownNotification> shown_;
  std::vector<std::uint32_t> withdrawn_;
  std::vector<std::pair<Reply, std::uint32_t>> waiting_;
  std::unique_ptr<sdbus::IConnection> connection_;
  std::unique_ptr<sdbus::IObject> object_;
};

}  // namespace nimbara::test
