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
        title: app.words.sun
        Accessible.role: Accessible.StaticText
        Accessible.name: app.words.sun + ": " + app.skyToday.sun

        Column {
            width: parent.width
            spacing: Theme.space
            SunArc {
                visible: app.skyToday.hasArc
                width: parent.width
                height: Math.min(112, width * 0.4) * Theme.scale
                share: app.skyToday.sunShare
                lines: Theme.dark ? "#4a5667" : "#c3ccd6"
                passed: Theme.sun
            }
            PlainText {
                width: parent.width
                text: app.skyToday.sun
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
        title: app.words.moon
        Accessible.role: Accessible.StaticText
        Accessible.name: app.words.moon + ": " + app.skyToday.moon + ", " + app.skyToday.moonTimes

        Row {
            width: parent.width
            spacing: 2 * Theme.space
            MoonDisc {
                width: 112 * Theme.scale
                height: width
                illumination: app.skyToday.moonIllumination
                litOnRight: app.skyToday.moonIsWaxing !== app.skyToday.fromSouth
                lit: Theme.moonLit
                shade: Theme.moonShade
            }
            Column {
                width: parent.width - 112 * Theme.scale - parent.spacing
                anchors.verticalCenter: parent.verticalCenter
                spacing: 4
                PlainText {
                    width: parent.width
                    text: app.skyToday.moon
                    horizontalAlignment: Text.AlignLeft
                    wrapMode: Text.Wrap
                    color: Theme.text
                    font.pixelSize: Theme.body
                    font.weight: Font.DemiBold
                }
                PlainText {
                    width: parent.width
                    text: app.skyToday.moonTimes
                    horizontalAlignment: Text.AlignLeft
                    wrapMode: Text.Wrap
                    color: Theme.muted
                    font.pixelSize: Theme.small
                }
            }
        }
    }
}
