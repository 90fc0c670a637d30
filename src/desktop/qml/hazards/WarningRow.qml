// An official warning: how severe, what, where, until when, from whom; opens its whole text on a sheet.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

Item {
    id: row

    required property string alertId
    required property string level
    required property string heading
    required property string message
    required property string area
    required property string when
    required property string near
    required property string issuer
    required property string age
    required property string sentence

    readonly property bool isCurrent: ListView.isCurrentItem && ListView.view.activeFocus

    function press() {
        open();
    }
    function open() {
        App.openAlert = alertId;
    }

    height: surface.height + Theme.space
    readonly property int spokenRole: Accessible.ListItem
    Accessible.name: sentence
    Accessible.description: message

    AbstractButton {
        id: surface
        width: row.width
        height: content.height + 2.5 * Theme.space
        focusPolicy: Qt.NoFocus  // the list's keys move from row to row
        onClicked: row.open()
        Accessible.ignored: true

        background: Rectangle {
            radius: 12
            color: Theme.alertColour(row.level)
            border.width: row.isCurrent ? 2 : 0
            border.color: Theme.accent

            Rectangle {
                x: LayoutMirroring.enabled ? parent.width - width - 7 : 7
                y: 9
                width: 4
                height: parent.height - 18
                radius: 2
                color: Theme.alertInk(row.level)
            }
        }

        component Words: PlainText {
            width: parent.width
            visible: text !== ""
            wrapMode: Text.Wrap
            color: Theme.text
            font.pixelSize: Theme.small
        }

        Column {
            id: content
            x: 2.75 * Theme.space
            y: 1.25 * Theme.space
            width: parent.width - 4.5 * Theme.space
            spacing: 3

            Words {
                text: row.heading
                font.pixelSize: Theme.body
                font.weight: Font.DemiBold
            }
            Words {
                text: Theme.joined([row.area, row.when], "  ·  ")
            }
            Words {
                text: row.near
            }
            Words {
                text: row.message
                maximumLineCount: 2
                elide: Text.ElideRight
            }
            Item {
                width: parent.width
                height: Math.max(origin.height, sign.height)
                Words {
                    id: origin
                    width: parent.width - sign.width - Theme.space
                    text: Theme.joined([row.issuer, row.age], "  ·  ")
                    opacity: 0.85
                    font.pixelSize: Theme.tiny
                }
                Sign {
                    id: sign
                    anchors.right: parent.right
                    size: 16 * Theme.scale
                    name: LayoutMirroring.enabled ? "back" : "forth"
                    ink: Theme.text
                }
            }
        }
    }
}
