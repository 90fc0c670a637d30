// A quiet surface with a title and content below it.
import QtQuick
import NimbaraPages

Rectangle {
    id: card

    property string title
    property real padding: 2 * Theme.space
    default property alias content: body.data

    implicitHeight: body.y + body.height + padding
    radius: Theme.radius
    color: Theme.card
    border.width: 1
    border.color: Theme.outline

    PlainText {
        id: heading
        x: card.padding
        y: card.padding
        width: card.width - 2 * card.padding
        visible: text !== ""
        text: card.title
        horizontalAlignment: Text.AlignLeft
        elide: Text.ElideRight
        color: Theme.muted
        font.pixelSize: Theme.small
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Item {
        id: body
        x: card.padding
        y: card.padding + (heading.visible ? heading.height + 1.25 * Theme.space : 0)
        width: card.width - 2 * card.padding
        height: childrenRect.height
    }
}
