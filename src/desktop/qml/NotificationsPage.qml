// Notifications: who tells them, the rules in groups, pauses and mutes, the user's own rules, the log.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

ScrollPage {
    id: page

    readonly property bool isTwofold: inner >= 860 * Theme.scale
    readonly property real part: isTwofold ? (inner - 3 * Theme.space) / 2 : inner

    Binding { target: App.notifications; property: "isOpen"; value: page.visible }

    PlainText {
        width: page.inner
        text: App.notifications.words.title
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

            NotifierCard { width: parent.width }
            Card {
                width: parent.width
                title: App.notifications.words.groups
                Column {
                    width: parent.width
                    Repeater {
                        model: App.notifications.groups
                        RuleGroup { width: parent.width }
                    }
                }
            }
            MuteCard { width: parent.width }
        }
        Column {
            width: page.part
            spacing: 2 * Theme.space

            OwnRules { width: parent.width }
            NotificationLog { width: parent.width }
        }
    }
}
