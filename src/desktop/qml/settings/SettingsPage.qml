// Settings: looks, units, services, start, folders, credits. What is chosen holds at once.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

ScrollPage {
    id: page


    Component.onCompleted: App.settings.open()

    most: [760, 1560, 2360][lanes - 1] * Theme.scale

    PlainText {
        width: page.inner
        text: App.words.settings
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
        text: App.settings.now.notice
        level: "warning"
    }

    Board {
        width: page.inner
        weights: page.lanes === 3 ? [1, 1, 1] : page.lanes === 2 ? [1, 1] : [1]
        spacing: 2 * Theme.space
        isMirrored: LayoutMirroring.enabled

        Card {
            readonly property int lane: 0
            title: App.settings.words.look
            SettingRows {
                width: parent.width
                model: App.settings.look
            }
        }
        Card {
            readonly property int lane: 0
            title: App.settings.words.units
            SettingRows {
                width: parent.width
                model: App.settings.units
            }
        }
        Card {
            readonly property int lane: 1
            title: App.settings.words.service
            Column {
                width: parent.width
                spacing: Theme.space / 2
                PlainText {
                    width: parent.width
                    text: App.settings.words.serviceHint
                    horizontalAlignment: Text.AlignLeft
                    wrapMode: Text.Wrap
                    color: Theme.muted
                    font.pixelSize: Theme.small
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
                Repeater {
                    model: App.settings.providers
                    ProviderRow { width: parent.width }
                }
            }
        }
        Card {
            readonly property int lane: 1
            title: App.hazards.words.official
            SourcesLink {}
        }
        Card {
            readonly property int lane: 1
            title: App.words.station
            PlainButton {
                readonly property Main main: Window.window as Main
                text: App.words.station
                onClicked: if (main) main.page = "station"
            }
        }
        Card {
            readonly property int lane: 0
            title: App.settings.words.window
            Column {
                width: parent.width
                SettingSwitch {
                    width: parent.width
                    title: App.settings.words.startAtLogin
                    explanation: App.settings.now.startNote
                    enabled: App.settings.now.canStartAtLogin
                    checked: App.settings.now.startsAtLogin
                    onSwitched: on => App.settings.setStartAtLogin(on)
                }
                SettingRows {
                    width: parent.width
                    model: App.settings.window
                }
            }
        }
        FoldedCard {
            readonly property int lane: 2
            heading: App.settings.words.advice
            hint: App.settings.words.adviceHint
            list: SettingRows { model: App.settings.advice }
        }
        FoldedCard {
            readonly property int lane: 2
            heading: App.settings.words.secrets
            hint: App.settings.words.secretsHint
            list: SettingRows { model: App.settings.keys }
        }
        FoldedCard {
            readonly property int lane: 2
            heading: App.settings.words.addresses
            hint: App.settings.words.addressesHint
            list: SettingRows { model: App.settings.addresses }
        }
        Card {
            readonly property int lane: 1
            title: App.settings.words.folders
            Column {
                width: parent.width
                Repeater {
                    model: App.settings.folders
                    SettingRow {
                        required property string purpose
                        required property string path
                        required property string sentence
                        width: parent.width
                        title: purpose
                        explanation: path
                        PlainButton {
                            text: App.settings.words.open
                            explanation: text + ": " + sentence
                            onClicked: App.settings.openFolder(path)
                        }
                    }
                }
            }
        }
        FoldedCard {
            readonly property int lane: 2
            heading: App.settings.words.credits
            list: Column {
                Repeater {
                    model: App.settings.credits
                    CreditRow { width: parent.width }
                }
            }
        }
        PlainText {
            readonly property int lane: -1
            text: App.settings.words.about.replace("%@", App.settings.version)
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            color: Theme.muted
            font.pixelSize: Theme.tiny
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
