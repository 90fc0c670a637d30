#include "support/answers/cap_message.h"

namespace nimbara::test {

std::string capMessage(std::vector<CapBlock> const& blocks, std::string const& more) {
  std::string message =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<alert xmlns=\"urn:oasis:names:tc:emergency:cap:1.2\">"
      "<identifier>2.49.0.0.1</identifier><sender>office@weather.example</sender>"
      "<sent>2026-11-21T05:30:00+00:00</sent><status>Actual</status><msgType>Alert</msgType>";
  for (CapBlock const& block : blocks) message += block.xml();
  return message + more + "</alert>";
}

}  // namespace nimbara::test
