// The days side by side; one that is chosen shows its hours in the strip above.
import QtQuick
import NimbaraPages
import NimbaraItems

Card {
    id: strip

    padding: Theme.space

    Row {
        id: row
        width: parent.width

        Repeater {
            model: App.days

            Pressable {
                id: day

                required property int index
                required property string name
                required property string sky
                required property bool isDay
                required property string lowest
                required property string highest
                required property string chance
                required property string sentence

                readonly property bool isOpen: App.openDay === index

                width: Math.floor(row.width / Math.max(1, App.days.count))
                height: content.height + 1.5 * Theme.space
                onClicked: App.openDay = isOpen ? -1 : index
                isExpandable: true
                isExpanded: isOpen
                Accessible.name: sentence
                background: Rectangle {
                    radius: 12
                    color: day.isOpen ? Theme.raised : day.hovered ? Qt.alpha(Theme.raised, 0.5) : "transparent"
                    border.width: day.visualFocus ? 2 : 0
                    border.color: Theme.accent
                }
                contentItem: Item {
                    Column {
                        id: content
                        anchors.centerIn: parent
                        width: parent.width - Theme.space
                        spacing: 2
                        PlainText {
                            width: parent.width
                            horizontalAlignment: Text.AlignHCenter
                            text: day.name
                            elide: Text.ElideRight
                            fontSizeMode: Text.HorizontalFit
                            minimumPixelSize: 9
                            color: Theme.text
                            font.pixelSize: Theme.small
                            font.weight: Font.DemiBold
                        }
                        Glyph {
                            anchors.horizontalCenter: parent.horizontalCenter
                            size: 34 * Theme.scale
                            sky: day.sky
                            isDay: day.isDay
                            overDark: Theme.dark
                        }
                        Row {
                            anchors.horizontalCenter: parent.horizontalCenter
                            spacing: Theme.space
                            PlainText {
                                text: day.highest
                                color: Theme.text
                                font.pixelSize: Theme.body
                                font.weight: Font.DemiBold
                            }
                            PlainText {
                                text: day.lowest
                                color: Theme.muted
                                font.pixelSize: Theme.body
                            }
                        }
                        PlainText {
                            width: parent.width
                            horizontalAlignment: Text.AlignHCenter
                            text: day.chance || " "
                            color: Theme.rain
                            font.pixelSize: Theme.tiny
                        }
                    }
                }
            }
        }
    }
}
