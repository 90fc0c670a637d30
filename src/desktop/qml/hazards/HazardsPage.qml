// Official warnings of the place, earthquakes, geomagnetic activity.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

ScrollPage {
    id: page

    most: 3000
    onEnabledChanged: if (enabled) App.hazards.look()
    Component.onCompleted: App.hazards.look()

    PlaceHeading {
        width: page.inner
        lead: App.hazards.words.title
        size: width < 300 * Theme.scale ? Theme.title : Theme.headline
    }

    Board {
        width: page.inner
        weights: [[1], [1, 1.4], [1, 1.4, 1]][page.lanes - 1]
        spacing: 2 * Theme.space
        isMirrored: LayoutMirroring.enabled

        Card {
            readonly property int lane: 0
            title: App.hazards.words.official

            Column {
                width: parent.width
                spacing: 1.25 * Theme.space

                PlainText {
                    width: parent.width
                    visible: text !== ""
                    text: App.hazards.official.hasPlace ? App.hazards.official.headline : App.hazards.words.noPlace
                    wrapMode: Text.Wrap
                    color: Theme.text
                    font.pixelSize: Theme.title
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
                Rectangle {
                    width: parent.width
                    visible: App.hazards.official.notice !== ""
                    height: notice.height + 2 * Theme.space
                    radius: 12
                    color: App.hazards.official.isUnchecked ? Theme.alertColour("warning") : Theme.raised
                    PlainText {
                        id: notice
                        x: 1.5 * Theme.space
                        y: Theme.space
                        width: parent.width - 3 * Theme.space
                        text: App.hazards.official.notice
                        wrapMode: Text.Wrap
                        color: Theme.text
                        font.pixelSize: Theme.small
                        Accessible.role: Accessible.AlertMessage
                        Accessible.name: text
                    }
                }
                ListView {
                    id: warnings
                    width: parent.width
                    visible: count > 0
                    // Long lists scroll by themselves, so that only what is seen is made.
                    height: Math.min(contentHeight, 420 * Theme.scale)
                    model: App.hazards.warnings
                    clip: true
                    boundsBehavior: Flickable.StopAtBounds
                    activeFocusOnTab: count > 0
                    keyNavigationEnabled: true
                    highlightMoveDuration: Theme.quick
                    Keys.onReturnPressed: if (currentItem) (currentItem as WarningRow).open()
                    Keys.onSpacePressed: if (currentItem) (currentItem as WarningRow).open()
                    ScrollBar.vertical: ThinBar {}
                    readonly property int spokenRole: Accessible.List
                    Accessible.name: App.hazards.words.official
                    section.property: "group"
                    section.delegate: PlainText {
                        required property string section
                        width: warnings.width
                        height: section === "" ? 0 : implicitHeight + 1.5 * Theme.space
                        visible: section !== ""
                        text: section
                        wrapMode: Text.Wrap
                        horizontalAlignment: Text.AlignLeft
                        color: Theme.muted
                        font.pixelSize: Theme.small
                        font.weight: Font.DemiBold
                        Accessible.role: Accessible.Heading
                        Accessible.name: text
                    }
                    delegate: WarningRow { width: warnings.width }
                }
                PlainText {
                    width: parent.width
                    visible: text !== ""
                    text: App.hazards.official.source
                    wrapMode: Text.Wrap
                    color: Theme.muted
                    font.pixelSize: Theme.tiny
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
                SourcesLink { visible: App.hazards.official.hasPlace }
            }
        }

        SupplementCards { readonly property int lane: 0 }

        QuakeCard { readonly property int lane: 1 }

        SupplementCards {
            readonly property int lane: 1
            column: 1
        }

        KpCard { readonly property int lane: page.lanes === 3 ? 2 : 0 }
    }
}
