// The air, storms, fires, lightning and travel advisories of one column: a card for each, with its state, what
// was found, and who says so.
import QtQuick
import NimbaraItems
import NimbaraPages

Column {
    id: cards

    property int column: 0
    readonly property Main main: Window.window as Main

    spacing: 2 * Theme.space

    Repeater {
        model: App.hazards.supplement

        Card {
            id: card

            required property string headline
            required property string body
            required property string source
            required property string heading
            required property string page
            required property bool isUnchecked
            required property real place

            width: cards.width
            visible: place === cards.column
            title: heading

            component Words: PlainText {
                width: parent.width
                visible: text !== ""
                horizontalAlignment: Text.AlignLeft
                wrapMode: Text.Wrap
                color: Theme.text
                font.pixelSize: Theme.small
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }

            Column {
                width: parent.width
                spacing: Theme.space

                Words {
                    text: card.headline
                    font.pixelSize: Theme.body
                    font.weight: card.isUnchecked ? Font.Normal : Font.DemiBold
                }
                Words {
                    text: card.body
                    lineHeight: 1.25
                }
                Words {
                    text: card.source
                    color: Theme.muted
                    font.pixelSize: Theme.tiny
                }
                PlainButton {
                    visible: card.page !== ""
                    text: App.air.words.title
                    onClicked: if (cards.main) cards.main.page = card.page
                }
            }
        }
    }
}
