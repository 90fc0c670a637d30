// What screen readers learn of the pages' items: the toolkit's own description of a control replaces what the
// page says of it, knows no expanded state and gives a list's items in the order in which they were created.
// An item with the property `spokenRole` is described from its properties instead; see Pressable.qml. Holds
// nothing.
#pragma once

namespace nimbara {

/// From now on for every item; once a process.
void enrolAccessibleItems();

}  // namespace nimbara
