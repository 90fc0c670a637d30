// Notifications: who tells them, the rules in groups, pauses and mutes, the user's own rules, the log.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

ScrollPage {
    id: page

    readonly property bool isTwofold: inner >= 860 * Theme.scale
    readonly property bool isThreefold: lanes === 3

    most: isThreefold ? 2400 : lanes === 2 ? 1560 : 1240

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

    Board {
        width: page.inner
        weights: page.isThreefold ? [1, 1, 1] : page.isTwofold ? [1, 1] : [1]
        spacing: 2 * Theme.space
        isMirrored: LayoutMirroring.enabled

        NotifierCard { readonly property int lane: 0 }
        Card {
            readonly property int lane: 0
            title: App.notifications.words.groups
            Column {
                width: parent.width
                Repeater {
                    model: App.notifications.groups
                    RuleGroup { width: parent.width }
                }
            }
        }
        MuteCard { readonly property int lane: page.isThreefold ? 1 : 0 }
        OwnRules { readonly property int lane: 1 }
        NotificationLog { readonly property int lane: 2 }
    }
}
