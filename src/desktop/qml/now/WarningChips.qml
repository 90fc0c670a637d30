// The warnings of the place, the most severe first, each in one line that opens its text; below, those of other places.
import QtQuick
import NimbaraPages
import NimbaraItems

Column {
    id: chips

    // A flood of warnings does not push the weather off the page.
    property int most: 6

    spacing: Theme.space

    component Chip: Pressable {
        id: chip

        property string level
        property string lead
        property string rest
        property bool isQuiet: false

        width: Math.min(implicitWidth, chips.width)
        implicitWidth: words.implicitWidth + sign.width + 4.5 * Theme.space
        implicitHeight: Math.max((isQuiet ? 30 : 34) * Theme.scale, words.height + (isQuiet ? 1.5 : 2) * Theme.space)
        background: Rectangle {
            radius: 12
            color: chip.isQuiet ? "transparent" : Theme.alertColour(chip.level)
            border.width: chip.visualFocus ? 2 : chip.isQuiet ? 1 : 0
            border.color: chip.visualFocus ? Theme.accent : Theme.outline
            Rectangle {
                anchors.fill: parent
                radius: parent.radius
                color: Theme.text
                opacity: chip.down ? 0.1 : chip.hovered ? 0.05 : 0
            }
        }
        contentItem: Item {
            Sign {
                id: sign
                anchors.left: parent.left
                anchors.leftMargin: 1.5 * Theme.space
                anchors.verticalCenter: parent.verticalCenter
                size: 18 * Theme.scale
                name: "warning"
                ink: Theme.alertInk(chip.level)
            }
            MarkedText {
                id: words
                anchors.left: sign.right
                anchors.leftMargin: Theme.space
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, chip.width - sign.width - 4 * Theme.space)
                lead: chip.lead
                rest: chip.rest
                wrapMode: Text.Wrap
                elide: Text.ElideRight
                maximumLineCount: 3
                color: chip.isQuiet ? Theme.muted : Theme.text
                font.pixelSize: Theme.small
            }
        }
    }

    Flow {
        width: parent.width
        spacing: Theme.space
        Repeater {
            model: App.alerts
            // Of five hundred warnings five hundred chips would be made, of which six are seen.
            Loader {
                id: slot
                required property int index
                required property string alertId
                required property string heading
                required property string level
                required property string when
                required property string sentence
                active: index < chips.most
                visible: active
                sourceComponent: Chip {
                    level: slot.level
                    lead: slot.heading
                    rest: slot.when
                    Accessible.name: slot.sentence
                    onClicked: App.openAlert = slot.alertId
                }
            }
        }
        Chip {
            visible: App.alerts.count > chips.most
            level: "info"
            lead: "+" + (App.alerts.count - chips.most)
            Accessible.name: lead + " " + App.words.alerts
            onClicked: chips.most = 60
        }
        Repeater {
            model: App.elsewhere
            Chip {
                required property int index
                required property string placeId
                required property string caption
                required level
                required property string sentence
                isQuiet: true
                rest: index === 0 ? App.words.also + " " + caption : caption
                Accessible.name: App.words.also + " " + sentence
                onClicked: App.selectPlace(placeId)
            }
        }
    }
}
