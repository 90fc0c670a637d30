// Whether there is an official warning for a place: its level by colour, a question mark where it is not known.
import QtQuick
import NimbaraPages

Sign {
    property string level

    size: 18 * Theme.scale
    name: level === "" ? "" : level === "unchecked" ? "question" : "warning"
    ink: level === "unchecked" ? Theme.muted : Theme.alertInk(level)
}
