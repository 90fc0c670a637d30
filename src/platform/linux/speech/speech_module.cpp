#include "platform/linux/speech/speech_module.h"

#include <cstdlib>
#include <libspeechd.h>
#include <memory>

namespace {

using nimbara::SpeechOutcome;

struct Close {
  void operator()(SPDConnection* connection) const { spd_close(connection); }
};
using Connection = std::unique_ptr<SPDConnection, Close>;

struct FreeAddress {
  void operator()(SPDConnectionAddress* address) const { SPDConnectionAddress__free(address); }
};

/// Null where there is no server and none could be started.
Connection connectionTo(bool startsServer) {
  std::unique_ptr<SPDConnectionAddress, FreeAddress> const address(spd_get_default_address(nullptr));
  char* failure = nullptr;
  Connection connection(
      spd_open2("nimbara", "brief", nullptr, SPD_MODE_SINGLE, address.get(), startsServer ? 1 : 0, &failure));
  std::free(failure);
  return connection;
}

SpeechOutcome say(char const* text, char const* language, bool isUrgent) {
  Connection const connection = connectionTo(true);
  if (!connection) return SpeechOutcome::noServer;
  // A server without that language reads in its own.
  spd_set_language(connection.get(), language);
  int const message = spd_say(connection.get(), isUrgent ? SPD_IMPORTANT : SPD_TEXT, text);
  return message < 0 ? SpeechOutcome::refused : SpeechOutcome::said;
}

bool isThere() {
  return connectionTo(false) != nullptr;
}

}  // namespace

extern "C" {

[[gnu::visibility("default")]] extern nimbara::SpeechModule const nimbaraSpeechModule;

nimbara::SpeechModule const nimbaraSpeechModule{sizeof(nimbara::SpeechModule), &say, &isThere};
}
