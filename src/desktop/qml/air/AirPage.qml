// The air of the place, its pollen and ultraviolet light, and today beside what the year usually brings.
import QtQuick
import NimbaraItems
import NimbaraPages

ScrollPage {
    id: page

    // Charts and bars need less room than the cards of other pages.
    readonly property int columns: width >= 1900 * Theme.scale ? 3 : width >= 860 * Theme.scale ? 2 : 1
    readonly property bool isWaiting: App.now.hasPlace && !App.air.now.isAsked

    most: 3000

    PlaceHeading {
        width: page.inner
        lead: App.air.words.title
        size: width < 300 * Theme.scale ? Theme.title : Theme.headline
    }
    AirWords {
        width: page.inner
        text: App.isReady && !App.now.hasPlace ? App.air.words.noPlace : ""
        color: Theme.muted
    }
    Loader {
        width: page.inner
        visible: active
        active: page.isWaiting
        source: "AirWaiting.qml"
    }

    Board {
        width: page.inner
        visible: App.now.hasPlace && App.air.now.isAsked
        weights: [[1], [1, 1.25], [1, 1.4, 1]][page.columns - 1]
        spacing: 2 * Theme.space
        isMirrored: LayoutMirroring.enabled

        // A card comes with its data, made between the frames.
        component Part: Loader {
            required property int lane
            visible: active
            asynchronous: true
        }

        Part {
            lane: 0
            active: App.air.now.isAsked
            sourceComponent: AirIndexCard {}
        }
        Part {
            lane: page.columns === 1 ? 0 : 1
            active: App.air.hours.count > 0
            sourceComponent: AirHoursCard {}
        }
        Part {
            lane: 0
            active: App.air.pollutants.count > 0
            sourceComponent: AirPartsCard {
                title: App.air.words.pollutants
                parts: App.air.pollutants
            }
        }
        Part {
            lane: page.columns === 1 ? 0 : 1
            active: App.air.now.uv !== ""
            sourceComponent: Card {
                title: App.air.words.uv
                Column {
                    width: parent.width
                    spacing: Theme.space
                    AirWords {
                        text: App.air.now.uv
                        font.weight: Font.DemiBold
                    }
                    AirWords { text: App.air.now.protection }
                }
            }
        }
        Part {
            lane: page.columns - 1
            active: App.air.now.isClimateAsked
            sourceComponent: ClimateCard {}
        }
        Part {
            lane: page.columns === 3 ? 2 : 0
            active: App.air.pollen.count > 0 || App.air.now.pollenState !== ""
            sourceComponent: AirPartsCard {
                title: App.air.words.pollen
                parts: App.air.pollen
                lead: App.air.now.pollenState
                note: App.air.pollen.count > 1 ? App.air.words.pollenBars : ""
            }
        }
    }
}
