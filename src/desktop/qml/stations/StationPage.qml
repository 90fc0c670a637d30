// The user's weather station: what it measures and what of it is not believed, which of several is shown, and how to
// link one or none.
import QtQuick
import NimbaraPages
import NimbaraItems

ScrollPage {
    id: page

    readonly property Main main: Window.window as Main

    function leave() {
        if (main)
            main.page = main.last;
    }

    most: [760, 1560, 2360][lanes - 1] * Theme.scale
    onEnabledChanged: if (enabled) App.station.open()
    Component.onCompleted: App.station.open()
    Keys.onEscapePressed: leave()

    component Words: PlainText {
        width: parent ? parent.width : 0
        visible: text !== ""
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
        color: Theme.muted
        font.pixelSize: Theme.small
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Item {
        width: page.inner
        height: Math.max(heading.height, back.height)
        PlainButton {
            id: back
            anchors.left: parent.left
            sign: LayoutMirroring.enabled ? "forth" : "back"
            explanation: App.station.words.back
            onClicked: page.leave()
        }
        PlainText {
            id: heading
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - back.width - 1.5 * Theme.space
            text: App.station.words.title
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignLeft
            color: Theme.text
            font.pixelSize: width < 420 * Theme.scale ? Theme.title : Theme.headline
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }
    }
    Words {
        width: page.inner
        text: App.station.words.hint
        font.pixelSize: Theme.body
    }
    Notice {
        width: page.inner
        text: App.station.now.note
        level: App.station.now.isTroubled ? "warning" : "advisory"
    }

    Board {
        width: page.inner
        weights: page.lanes === 3 ? [1, 1, 1] : page.lanes === 2 ? [1, 1] : [1]
        spacing: 2 * Theme.space
        isMirrored: LayoutMirroring.enabled

        Card {
            readonly property int lane: 0
            title: App.station.now.source || App.station.words.title
            Column {
                width: parent.width
                spacing: Theme.space

                Words {
                    text: App.station.now.name
                    color: Theme.text
                    font.pixelSize: Theme.title
                    font.weight: Font.DemiBold
                }
                Words {
                    text: App.station.now.live
                    color: Theme.text
                }
                Words {
                    text: App.station.now.problem
                    color: Theme.text
                }
                Words { text: App.station.now.elsewhere }
                Repeater {
                    model: App.station.now.doubts
                    Words {
                        required property string modelData
                        text: modelData
                        color: Theme.text
                    }
                }
                Words { text: App.station.now.busy }
                Flow {
                    width: parent.width
                    spacing: Theme.space
                    visible: App.station.now.isLinked
                    PlainButton {
                        text: App.station.words.refresh
                        enabled: !App.station.now.isBusy
                        onClicked: App.station.refresh()
                    }
                    PlainButton {
                        text: App.station.words.unlink
                        explanation: text + ": " + App.station.words.unlinkHint
                        enabled: !App.station.now.isBusy
                        onClicked: App.station.unlink()
                    }
                }
            }
        }
        Card {
            readonly property int lane: 0
            visible: App.station.modules.count > 0
            title: App.station.words.modules
            Column {
                width: parent.width
                spacing: 1.5 * Theme.space
                Repeater {
                    model: App.station.modules
                    StationWords {
                        required name
                        required values
                        required detail
                        required isTroubled
                        required property string sentence
                        width: parent.width
                        Accessible.role: Accessible.ListItem
                        Accessible.name: sentence
                    }
                }
            }
        }
        Card {
            readonly property int lane: page.lanes - 1
            visible: App.station.choices.count > 0
            title: App.station.words.choose
            Column {
                width: parent.width
                Repeater {
                    model: App.station.choices
                    StationRow {
                        required property string stationId
                        required name
                        required values
                        required detail
                        required sentence
                        required isChosen
                        required isTroubled
                        width: parent.width
                        enabled: !App.station.now.isBusy
                        onClicked: App.station.choose(stationId)
                    }
                }
            }
        }
        Card {
            readonly property int lane: page.lanes - 1
            title: App.station.words.around
            Column {
                width: parent.width
                spacing: Theme.space
                Words { text: App.station.now.around }
                PlainButton {
                    visible: App.station.now.lookAround !== ""
                    text: App.station.now.lookAround
                    enabled: !App.station.now.isBusy
                    onClicked: App.station.lookAround()
                }
                PlainButton {
                    visible: App.station.now.isAround
                    text: App.station.words.choose
                    enabled: !App.station.now.isBusy
                    onClicked: App.station.choose("")
                }
                StationRow {
                    width: parent.width
                    visible: App.station.now.hasMedian
                    name: App.station.words.median
                    sentence: name
                    isChosen: App.station.now.isMedian
                    enabled: !App.station.now.isBusy
                    onClicked: App.station.chooseAround("")
                }
                Column {
                    width: parent.width
                    Repeater {
                        model: App.station.around
                        StationRow {
                            required property string stationId
                            required name
                            required values
                            required detail
                            required sentence
                            required isChosen
                            required isTroubled
                            width: parent.width
                            enabled: !App.station.now.isBusy
                            onClicked: App.station.chooseAround(stationId)
                        }
                    }
                }
            }
        }
        StationAccountCard {
            readonly property int lane: page.lanes > 1 ? 1 : 0
        }
        Card {
            readonly property int lane: page.lanes > 1 ? 1 : 0
            title: App.station.words.address
            Column {
                width: parent.width
                spacing: Theme.space
                Words { text: App.station.words.addressHint }
                StationField {
                    id: address
                    width: parent.width
                    title: App.station.words.addressField
                    example: "192.168.1.20"
                }
                StationField {
                    id: called
                    width: parent.width
                    title: App.station.words.addressName
                }
                PlainButton {
                    text: App.station.words.link
                    explanation: App.station.words.address
                    enabled: address.text !== "" && !App.station.now.isBusy
                    onClicked: App.station.linkAddress(address.text, called.text)
                }
            }
        }
    }
}
