// The one question: notifications while the window is closed.
import QtQuick
import NimbaraPages
import NimbaraItems

Card {
    id: card

    readonly property string phase: App.first.background.phase

    Item {
        width: parent.width
        height: Math.max(sign.height, words.height)
        Sign {
            id: sign
            anchors.left: parent.left
            size: 24 * Theme.scale
            name: card.phase === "done" ? "check" : card.phase === "failed" ? "warning" : "bell"
            ink: card.phase === "failed" ? Theme.alertInk("warning") : Theme.accent
        }
        Column {
            id: words
            anchors.left: sign.right
            anchors.leftMargin: 1.5 * Theme.space
            anchors.right: parent.right
            spacing: Theme.space
            PlainText {
                width: parent.width
                text: App.first.background.title
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
                color: Theme.text
                font.pixelSize: Theme.body
                font.weight: Font.DemiBold
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            PlainText {
                width: parent.width
                visible: text !== ""
                text: App.first.background.text
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
                color: Theme.muted
                font.pixelSize: Theme.small
                Accessible.role: card.phase === "question" ? Accessible.StaticText : Accessible.AlertMessage
                Accessible.name: text
            }
            Flow {
                visible: card.phase !== "working"
                width: parent.width
                spacing: Theme.space
                PlainButton {
                    visible: card.phase === "question" || card.phase === "failed"
                    isMain: true
                    text: card.phase === "failed" ? App.first.words.again : App.first.words.accept
                    onClicked: App.first.acceptBackground()
                }
                PlainButton {
                    text: card.phase === "question" ? App.first.words.decline : App.words.dismiss
                    onClicked: App.first.closeBackground()
                }
            }
        }
    }
}
