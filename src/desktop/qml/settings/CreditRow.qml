// Whose data or work it is; opens its page in the browser.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages

Column {
    id: credit

    required property string name
    required property string what
    required property string link
    required property bool isFirst
    required property string kind
    required property string sentence

    PlainText {
        width: parent.width
        visible: credit.isFirst
        topPadding: Theme.space
        text: credit.kind
        horizontalAlignment: Text.AlignLeft
        color: Theme.text
        font.pixelSize: Theme.body
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Pressable {
        id: row
        width: parent.width
        onClicked: Qt.openUrlExternally(credit.link)
        spokenRole: Accessible.Link
        Accessible.name: credit.sentence
        background: Rectangle {
            radius: 10
            color: row.hovered ? Theme.raised : "transparent"
            border.width: row.visualFocus ? 2 : 0
            border.color: Theme.accent
        }
        contentItem: Column {
            topPadding: Theme.space / 2
            bottomPadding: Theme.space / 2
            PlainText {
                width: row.width
                text: credit.name
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
                color: Theme.accent
                font.pixelSize: Theme.small
            }
            PlainText {
                width: row.width
                text: credit.what
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
                color: Theme.muted
                font.pixelSize: Theme.small
            }
        }
    }
}
