#include "platform/linux/speech/speech_module.h"

#include <atomic>
#include <cstdlib>
#include <libspeechd.h>
#include <memory>
#include <mutex>

namespace {

using nimbara::SpeechOutcome;

struct Close {
  void operator()(SPDConnection* connection) const { spd_close(connection); }
};
using Connection = std::unique_ptr<SPDConnection, Close>;

struct FreeAddress {
  void operator()(SPDConnectionAddress* address) const { SPDConnectionAddress__free(address); }
};

/// The texts that were taken and have not ended.
std::atomic<int> waiting = 0;

/// On the library's own thread.
void noteEnd(std::size_t /*message*/, std::size_t /*client*/, SPDNotificationType /*how*/) {
  --waiting;
}

/// Null where there is no server and none could be started.
Connection connectionTo(bool startsServer, SPDConnectionMode mode) {
  std::unique_ptr<SPDConnectionAddress, FreeAddress> const address(spd_get_default_address(nullptr));
  char* failure = nullptr;
  Connection connection(
      spd_open2("nimbara", "brief", nullptr, mode, address.get(), startsServer ? 1 : 0, &failure));
  std::free(failure);
  return connection;
}

/// Of the process, so that what it says can be stopped.
struct Speaker {
  std::mutex mutex;
  Connection connection;  // guarded by it
};

/// Never destroyed: the library's thread may outlive the end of the program's main function.
Speaker& speaker() {
  static auto& one = *new Speaker;
  return one;
}

bool open(Speaker& speaker) {
  waiting = 0;
  speaker.connection = connectionTo(true, SPD_MODE_THREADED);
  if (!speaker.connection) return false;
  speaker.connection->callback_end = speaker.connection->callback_cancel = &noteEnd;
  spd_set_notification_on(speaker.connection.get(), SPD_END);
  spd_set_notification_on(speaker.connection.get(), SPD_CANCEL);
  return true;
}

bool trySay(Speaker& speaker, char const* text, char const* language, bool isUrgent) {
  // A server without that language reads in its own.
  spd_set_language(speaker.connection.get(), language);
  ++waiting;
  if (spd_say(speaker.connection.get(), isUrgent ? SPD_IMPORTANT : SPD_TEXT, text) >= 0) return true;
  --waiting;
  return false;
}

SpeechOutcome say(char const* text, char const* language, bool isUrgent) {
  Speaker& speaker = ::speaker();
  std::lock_guard const lock(speaker.mutex);
  bool const wasOpen = speaker.connection != nullptr;
  if (!wasOpen && !open(speaker)) return SpeechOutcome::noServer;
  if (trySay(speaker, text, language, isUrgent)) return SpeechOutcome::said;
  // The server may have been started anew since.
  if (wasOpen && !open(speaker)) return SpeechOutcome::noServer;
  bool const isSaid = wasOpen && trySay(speaker, text, language, isUrgent);
  return isSaid ? SpeechOutcome::said : SpeechOutcome::refused;
}

bool isThere() {
  return connectionTo(false, SPD_MODE_SINGLE) != nullptr;
}

void stop() {
  Speaker& speaker = ::speaker();
  std::lock_guard const lock(speaker.mutex);
  if (speaker.connection) spd_cancel(speaker.connection.get());
  waiting = 0;
}

bool isSpeaking() {
  return waiting > 0;
}

}  // namespace

extern "C" {

[[gnu::visibility("default")]] extern nimbara::SpeechModule const nimbaraSpeechModule;

nimbara::SpeechModule const nimbaraSpeechModule{sizeof(nimbara::SpeechModule), &say, &isThere, &stop,
                                                &isSpeaking};
}
