// A place with the source of its official warnings: the state of the last check by sign, colour and words, what the
// source cannot give, who follows it, and the choice of another one.
import QtQuick
import NimbaraPages
import NimbaraItems

Rectangle {
    id: card

    required property string placeId
    required property string place
    required property string checkState
    required property string stateText
    required property string service
    required property string detail
    required property string checked
    required property string lacks
    required property string next
    required property var sources
    required property var sourceNames
    required property string chosenSource
    required property string sentence

    readonly property var look: ({
        warnings: { sign: "warning", ink: Theme.danger },
        none: { sign: "check", ink: Theme.wind },
        unchecked: { sign: "question", ink: Theme.alertInk("warning") },
        countryWide: { sign: "warning", ink: Theme.danger },
        unplaced: { sign: "place", ink: Theme.alertInk("advisory") },
        uncovered: { sign: "minus", ink: Theme.muted }
    })[checkState] ?? { sign: "others", ink: Theme.muted }

    height: content.height + 4 * Theme.space
    radius: Theme.radius
    color: Theme.card
    border.width: 1
    border.color: Theme.outline
    Accessible.role: Accessible.ListItem
    Accessible.name: sentence

    component Words: PlainText {
        width: parent ? parent.width : 0
        visible: text !== ""
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
        color: Theme.text
        font.pixelSize: Theme.small
    }

    component Fact: Column {
        id: fact
        property string name
        property string value
        visible: value !== ""
        spacing: 2
        Words {
            text: fact.name
            color: Theme.muted
            font.pixelSize: Theme.tiny
            font.weight: Font.DemiBold
        }
        Words {
            text: fact.value
            Accessible.role: Accessible.StaticText
            Accessible.name: fact.name + ": " + fact.value
        }
    }

    Column {
        id: content
        x: 2 * Theme.space
        y: 2 * Theme.space
        width: parent.width - 4 * Theme.space
        spacing: 1.5 * Theme.space

        Item {
            width: parent.width
            height: Math.max(badge.height, names.height)
            Rectangle {
                id: badge
                anchors.left: parent.left
                width: 40 * Theme.scale
                height: width
                radius: width / 2
                color: Qt.alpha(card.look.ink, 0.16)
                Sign {
                    anchors.centerIn: parent
                    size: 22 * Theme.scale
                    name: card.look.sign
                    ink: card.look.ink
                }
            }
            Column {
                id: names
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width - badge.width - 1.5 * Theme.space
                spacing: 2
                Words {
                    text: card.place
                    font.pixelSize: Theme.title
                    font.weight: Font.DemiBold
                }
                Words {
                    text: card.stateText
                    color: card.look.ink
                    font.pixelSize: Theme.body
                    font.weight: Font.DemiBold
                }
            }
        }
        Words {
            visible: text !== "" && text !== card.stateText
            text: card.detail
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Grid {
            id: facts
            readonly property real column: (width - (columns - 1) * columnSpacing) / columns
            width: parent.width
            columns: width < 560 * Theme.scale ? 1 : 2
            columnSpacing: 3 * Theme.space
            rowSpacing: 1.5 * Theme.space
            Fact { width: facts.column; name: App.sources.words.source; value: card.service }
            Fact { width: facts.column; name: App.sources.words.checked; value: card.checked }
            Fact { width: facts.column; name: App.sources.words.lacks; value: card.lacks }
            Fact { width: facts.column; name: App.sources.words.next; value: card.next }
        }
        Column {
            width: parent.width
            visible: card.sources.length > 1
            spacing: 4
            Words {
                text: App.sources.words.choice
                color: Theme.muted
                font.pixelSize: Theme.tiny
                font.weight: Font.DemiBold
            }
            Choice {
                title: App.sources.words.choice + ", " + card.place
                model: card.sources.map((source, index) => ({ value: source, text: card.sourceNames[index] }))
                value: card.chosenSource
                onChosen: source => App.sources.choose(card.placeId, source)
            }
        }
    }
}
