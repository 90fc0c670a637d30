// Sun and moon of the day.
import QtQuick
import NimbaraItems
import NimbaraPages

Grid {
    id: cards

    readonly property real each: columns === 2 ? (width - spacing) / 2 : width

    columns: width >= 560 ? 2 : 1
    spacing: 2 * Theme.space

    Card {
        width: cards.each
        height: Math.max(implicitHeight, moon.implicitHeight)
        title: App.words.sun
        Accessible.role: Accessible.StaticText
        Accessible.name: App.words.sun + ": " + App.skyToday.sun

        Column {
            width: parent.width
            spacing: Theme.space
            SunArc {
                visible: App.skyToday.hasArc
                width: parent.width
                height: Math.min(112, width * 0.4) * Theme.scale
                share: App.skyToday.sunShare
                lines: Theme.dark ? "#4a5667" : "#c3ccd6"
                passed: Theme.sun
            }
            PlainText {
                width: parent.width
                text: App.skyToday.sun
                horizontalAlignment: Text.AlignLeft
                wrapMode: Text.Wrap
                color: Theme.text
                font.pixelSize: Theme.body
            }
        }
    }
    Card {
        id: moon
        width: cards.each
        height: Math.max(implicitHeight, cards.children[0].implicitHeight)
        title: App.words.moon
        Accessible.role: Accessible.StaticText
        Accessible.name: App.words.moon + ": " + App.skyToday.moon + ", " + App.skyToday.moonTimes

        Row {
            width: parent.width
            spacing: 2 * Theme.space
            MoonDisc {
                width: 112 * Theme.scale
                height: width
                illumination: App.skyToday.moonIllumination
                litOnRight: App.skyToday.moonIsWaxing !== App.skyToday.fromSouth
                lit: Theme.moonLit
                shade: Theme.moonShade
            }
            Column {
                width: parent.width - 112 * Theme.scale - parent.spacing
                anchors.verticalCenter: parent.verticalCenter
                spacing: 4
                PlainText {
                    width: parent.width
                    text: App.skyToday.moon
                    horizontalAlignment: Text.AlignLeft
                    wrapMode: Text.Wrap
                    color: Theme.text
                    font.pixelSize: Theme.body
                    font.weight: Font.DemiBold
                }
                PlainText {
                    width: parent.width
                    text: App.skyToday.moonTimes
                    horizontalAlignment: Text.AlignLeft
                    wrapMode: Text.Wrap
                    color: Theme.muted
                    font.pixelSize: Theme.small
                }
            }
        }
    }
}
