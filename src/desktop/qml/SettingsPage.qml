// Settings: looks, units, services, start, folders, credits. What is chosen holds at once.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages

ScrollPage {
    id: page

    readonly property var words: app.settings.words
    readonly property var now: app.settings.now

    Component.onCompleted: app.settings.open()

    most: 760 * Theme.scale

    PlainText {
        width: page.inner
        text: app.words.settings
        horizontalAlignment: Text.AlignLeft
        color: Theme.text
        font.pixelSize: Theme.headline
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: Theme.title
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Notice {
        width: page.inner
        text: page.now.notice
        level: "warning"
    }

    Card {
        width: page.inner
        title: page.words.look
        SettingRows {
            width: parent.width
            model: app.settings.look
        }
    }
    Card {
        width: page.inner
        title: page.words.units
        SettingRows {
            width: parent.width
            model: app.settings.units
        }
    }
    Card {
        width: page.inner
        title: page.words.service
        Column {
            width: parent.width
            spacing: Theme.space / 2
            PlainText {
                width: parent.width
                text: page.words.serviceHint
                horizontalAlignment: Text.AlignLeft
                wrapMode: Text.Wrap
                color: Theme.muted
                font.pixelSize: Theme.small
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            Repeater {
                model: app.settings.providers
                ProviderRow { width: parent.width }
            }
        }
    }
    Card {
        width: page.inner
        title: page.words.window
        Column {
            width: parent.width
            SettingSwitch {
                width: parent.width
                title: page.words.startAtLogin
                explanation: page.now.startNote
                enabled: page.now.canStartAtLogin
                checked: page.now.startsAtLogin
                onSwitched: on => app.settings.setStartAtLogin(on)
            }
            SettingRows {
                width: parent.width
                model: app.settings.window
            }
        }
    }
    Notice {
        width: page.inner
        text: page.now.needsRestart ? page.words.restart : ""
    }
    FoldedCard {
        width: page.inner
        heading: page.words.secrets
        hint: page.words.secretsHint
        list: SettingRows { model: app.settings.keys }
    }
    FoldedCard {
        width: page.inner
        heading: page.words.addresses
        hint: page.words.addressesHint
        list: SettingRows { model: app.settings.addresses }
    }
    Card {
        width: page.inner
        title: page.words.folders
        Column {
            width: parent.width
            Repeater {
                model: app.settings.folders
                SettingRow {
                    required property string purpose
                    required property string path
                    required property string sentence
                    width: parent.width
                    title: purpose
                    explanation: path
                    PlainButton {
                        text: page.words.open
                        explanation: text + ": " + sentence
                        onClicked: app.settings.openFolder(path)
                    }
                }
            }
        }
    }
    FoldedCard {
        width: page.inner
        heading: page.words.credits
        list: Column {
            Repeater {
                model: app.settings.credits
                CreditRow { width: parent.width }
            }
        }
    }
    PlainText {
        width: page.inner
        text: page.words.about.replace("%@", app.settings.version)
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        color: Theme.muted
        font.pixelSize: Theme.tiny
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
