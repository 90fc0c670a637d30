#include "support/answers/atom_feed.h"

namespace nimbara::test {

std::string atomFeed(std::vector<AtomEntry> const& entries) {
  std::string feed =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<feed xmlns=\"http://www.w3.org/2005/Atom\" "
      "xmlns:cap=\"urn:oasis:names:tc:emergency:cap:1.2\"><id>tag:1</id><title>All warnings</title>"
      "<updated>2026-11-21T06:00:00Z</updated><author><name>feed</name></author>";
  for (AtomEntry const& entry : entries) feed += entry.xml();
  return feed + "</feed>";
}

}  // namespace nimbara::test
