// One day on the scale of all days; opens its hours.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages
import NimbaraItems

Column {
    id: day

    required property int index
    required property string name
    required property string date
    required property string sky
    required property bool isDay
    required property string condition
    required property string lowest
    required property string highest
    required property double barFrom
    required property double barTo
    required property string fromColour
    required property string middleColour
    required property string toColour
    required property string chance
    required property string amount
    required property string wind
    required property string sentence

    property bool hasHours: true  // a day of the outlook has none
    readonly property bool isOpen: hasHours && App.openDay === index
    readonly property bool isWide: width >= 640 * Theme.scale
    readonly property bool isTight: width < 300 * Theme.scale  // two lines

    Pressable {
        id: row
        width: day.width
        height: (day.isTight ? 104 : 56) * Theme.scale
        onClicked: if (day.hasHours) App.openDay = day.isOpen ? -1 : day.index
        isExpandable: day.hasHours
        isExpanded: day.isOpen
        enabled: day.hasHours
        spokenRole: day.hasHours ? Accessible.Button : Accessible.StaticText
        Accessible.name: day.sentence
        background: Rectangle {
            radius: 10
            color: row.hovered && day.hasHours ? Theme.raised : "transparent"
            opacity: row.visualFocus || row.hovered ? 1 : 0
            border.width: row.visualFocus ? 2 : 0
            border.color: Theme.accent
        }

        contentItem: Item {
            Column {
                id: names
                anchors.left: parent.left
                anchors.leftMargin: Theme.space
                y: day.isTight ? 0 : (parent.height - height) / 2
                width: day.isTight ? parent.width - Theme.space : (day.isWide ? 150 : 98) * Theme.scale
                PlainText {
                    width: parent.width
                    text: day.name
                    fontSizeMode: Text.HorizontalFit
                    minimumPixelSize: 9
                    elide: Text.ElideRight
                    color: Theme.text
                    font.pixelSize: Theme.body
                    font.weight: Font.DemiBold
                }
                PlainText {
                    width: parent.width
                    text: day.isWide ? day.condition : day.chance || day.date
                    elide: Text.ElideRight
                    color: Theme.muted
                    font.pixelSize: Theme.tiny
                }
            }
            Glyph {
                id: picture
                anchors.left: day.isTight ? parent.left : names.right
                y: day.isTight ? names.height + Theme.space / 2 : (parent.height - height) / 2
                size: 34 * Theme.scale
                sky: day.sky
                isDay: day.isDay
                overDark: Theme.dark
            }
            PlainText {
                id: lowest
                anchors.left: picture.right
                anchors.verticalCenter: picture.verticalCenter
                width: 44 * Theme.scale
                horizontalAlignment: Text.AlignRight
                text: day.lowest
                color: Theme.muted
                font.pixelSize: Theme.body
            }
            Item {
                id: bar
                anchors.left: lowest.right
                anchors.leftMargin: Theme.space
                anchors.right: highest.left
                anchors.verticalCenter: picture.verticalCenter
                height: 6
                Rectangle {
                    anchors.fill: parent
                    radius: 3
                    color: Theme.raised
                }
                Rectangle {
                    x: (LayoutMirroring.enabled ? 1 - day.barTo : day.barFrom) * bar.width
                    width: Math.max(6, (day.barTo - day.barFrom) * bar.width)
                    height: parent.height
                    radius: 3
                    // The same colour is the same temperature on every day.
                    gradient: Gradient {
                        orientation: Gradient.Horizontal
                        GradientStop { position: 0; color: bar.LayoutMirroring.enabled ? day.toColour : day.fromColour }
                        GradientStop { position: 0.5; color: day.middleColour }
                        GradientStop { position: 1; color: bar.LayoutMirroring.enabled ? day.fromColour : day.toColour }
                    }
                }
            }
            PlainText {
                id: highest
                anchors.right: day.isWide ? rain.left : parent.right
                anchors.verticalCenter: picture.verticalCenter
                width: 44 * Theme.scale
                horizontalAlignment: Text.AlignHCenter
                text: day.highest
                color: Theme.text
                font.pixelSize: Theme.body
                font.weight: Font.DemiBold
            }
            PlainText {
                id: rain
                visible: day.isWide
                anchors.right: wind.left
                anchors.verticalCenter: parent.verticalCenter
                width: 118 * Theme.scale
                horizontalAlignment: Text.AlignRight
                text: Theme.joined([day.chance, day.amount], "  ")
                color: Theme.rain
                font.pixelSize: Theme.small
            }
            PlainText {
                id: wind
                visible: day.isWide
                anchors.right: parent.right
                anchors.rightMargin: Theme.space
                anchors.verticalCenter: parent.verticalCenter
                width: 84 * Theme.scale
                horizontalAlignment: Text.AlignRight
                text: day.wind
                color: Theme.muted
                font.pixelSize: Theme.small
            }
        }
    }
    Loader {
        width: day.width
        active: day.isOpen
        visible: active
        sourceComponent: HourStrip {
            title: day.name + ", " + day.date
            hours: App.dayHours
            border.width: 0
        }
    }
}
