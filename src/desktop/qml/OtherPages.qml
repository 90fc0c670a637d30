// The pages that a narrow window has no room for.
import QtQuick
import QtQuick.Templates as T
import NimbaraPages

T.Popup {
    id: popup

    property var pages
    property string page
    signal chosen(string name)

    parent: T.Overlay.overlay
    x: parent ? parent.width - width - Theme.space : 0
    y: parent ? parent.height - height - 72 * Theme.scale : 0
    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: contentHeight + topPadding + bottomPadding
    modal: true
    padding: Theme.space
    T.Overlay.modal: Rectangle { color: Qt.rgba(0, 0, 0, 0.4) }
    background: Rectangle {
        radius: Theme.radius
        color: Theme.card
        border.color: Theme.outline
    }
    contentItem: Column {
        spacing: Theme.space

        Repeater {
            model: popup.pages

            NavButton {
                required property var modelData
                width: 132 * Theme.scale
                sky: modelData.sky
                sign: modelData.sign
                text: modelData.title
                isCurrent: popup.page === modelData.name
                onClicked: {
                    popup.chosen(modelData.name);
                    popup.close();
                }
            }
        }
    }
}
