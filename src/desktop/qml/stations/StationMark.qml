// Beside a value that the user's own station gives: a small sign, whose words say whose it is and how old.
import QtQuick
import QtQuick.Templates as T
import NimbaraPages

Item {
    id: mark

    property string text
    property color ink: Theme.muted
    property bool isSpoken: true  // where nothing else says the words

    visible: text !== ""
    width: 18 * Theme.scale
    height: width
    Accessible.ignored: !isSpoken || text === ""
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Sign {
        anchors.fill: parent
        size: mark.width
        name: "station"
        ink: mark.ink
    }
    HoverHandler { id: pointer }
    // Of the templates: the styled one brings a library that nothing else of the first frame needs.
    T.Popup {
        y: -height - 4
        implicitWidth: contentWidth + leftPadding + rightPadding
        implicitHeight: contentHeight + topPadding + bottomPadding
        padding: 12
        visible: pointer.hovered
        closePolicy: T.Popup.NoAutoClose
        margins: Theme.space
        contentItem: PlainText {
            text: mark.text
            color: Theme.text
            font.pixelSize: Theme.small
        }
        background: Rectangle {
            radius: 8
            color: Theme.card
            border.width: 1
            border.color: Theme.outline
        }
    }
}
