// Notifications: who tells them, the rules in groups, pauses and mutes, the user's own rules, the log.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages

ScrollPage {
    id: page

    readonly property var notifications: app.notifications
    readonly property var words: notifications.words
    readonly property bool isTwofold: inner >= 860 * Theme.scale
    readonly property real part: isTwofold ? (inner - 3 * Theme.space) / 2 : inner

    Binding { target: page.notifications; property: "isOpen"; value: page.visible }

    PlainText {
        width: page.inner
        text: page.words.title ?? ""
        horizontalAlignment: Text.AlignLeft
        color: Theme.text
        font.pixelSize: Theme.headline
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: Theme.title
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Grid {
        columns: page.isTwofold ? 2 : 1
        columnSpacing: 3 * Theme.space
        rowSpacing: 2 * Theme.space

        Column {
            width: page.part
            spacing: 2 * Theme.space

            NotifierCard { width: parent.width; notifications: page.notifications }
            Card {
                width: parent.width
                title: page.words.groups ?? ""
                Column {
                    width: parent.width
                    Repeater {
                        model: page.notifications.groups
                        RuleGroup { width: parent.width; notifications: page.notifications }
                    }
                }
            }
            MuteCard { width: parent.width; notifications: page.notifications }
        }
        Column {
            width: page.part
            spacing: 2 * Theme.space

            OwnRules { width: parent.width; notifications: page.notifications }
            NotificationLog { width: parent.width; notifications: page.notifications }
        }
    }
}
