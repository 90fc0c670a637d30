// What is pressed, by mouse, key or the action of a screen reader, which learns its role and state from here: what it
// learns of the toolkit's own buttons is not what the page says of them.
import QtQuick
import QtQuick.Templates as T
import NimbaraPages

T.AbstractButton {
    id: button

    property int spokenRole: Accessible.Button
    property bool isCheckable: false
    property bool isChecked: false
    property bool isExpandable: false
    property bool isExpanded: false
    property bool isSelectable: false
    property bool isCurrent: false

    function press() {
        clicked();
    }

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    Accessible.name: text
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}
