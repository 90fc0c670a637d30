// How this run's terminal is written to, from what the session knows of it.
#pragma once

#include "cli/cli.h"
#include "cli/pages/style.h"

namespace nimbara {

/// Colours only on a terminal and where nobody refuses them; plain ASCII where the locale has no more.
inline Style styleOf(Session const& session, bool ascii = false) {
  return {session.console.terminalWidth() > 0 && !session.environment.noColor,
          ascii || !session.environment.utf8};
}

/// Cells a line: the terminal's, else $COLUMNS, else 80.
inline int widthOf(Session const& session) {
  constexpr int kPlainWidth = 80;
  if (session.console.terminalWidth() > 0) return session.console.terminalWidth();
  return session.environment.columns > 0 ? session.environment.columns : kPlainWidth;
}

}  // namespace nimbara
