// The first minute: what this is, a place to begin with, and who will be asked.
import QtQuick
import NimbaraPages
import NimbaraItems

ScrollPage {
    id: page

    // Typed while nothing else has the focus.
    function begin(text) { search.begin(text) }

    most: 680 * Theme.scale

    onEnabledChanged: if (enabled) search.field.forceActiveFocus()
    Component.onCompleted: search.field.forceActiveFocus()

    Rectangle {
        width: page.inner
        height: words.height + 6 * Theme.space
        radius: 1.5 * Theme.radius
        gradient: Gradient {
            orientation: Gradient.Vertical
            GradientStop { position: 0; color: Theme.dark ? "#16365c" : "#1f5fa6" }
            GradientStop { position: 1; color: Theme.dark ? "#2c5c86" : "#3f88c5" }
        }
        Glyph {
            id: picture
            anchors.right: parent.right
            anchors.rightMargin: 3 * Theme.space
            anchors.verticalCenter: parent.verticalCenter
            visible: page.inner > 420 * Theme.scale
            size: 96 * Theme.scale
            sky: "partlyCloudy"
            overDark: true
        }
        Column {
            id: words
            anchors.left: parent.left
            anchors.leftMargin: 3 * Theme.space
            anchors.right: picture.visible ? picture.left : parent.right
            anchors.rightMargin: 3 * Theme.space
            y: 3 * Theme.space
            spacing: Theme.space
            PlainText {
                width: parent.width
                text: App.first.words.title
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
                color: "white"
                font.pixelSize: Theme.headline
                font.weight: Font.DemiBold
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            PlainText {
                width: parent.width
                text: App.first.words.purpose
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
                color: "white"
                font.pixelSize: Theme.body
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }

    Notice {
        width: page.inner
        text: App.first.welcome.notice
    }

    PlaceSearch {
        id: search
        width: page.inner
    }

    Flow {
        visible: search.isEmpty
        width: page.inner
        spacing: Theme.space
        PlainButton {
            isMain: true
            text: App.words.findHere
            enabled: !App.first.welcome.isLocating
            onClicked: App.locate()
        }
        PlainText {
            height: 36 * Theme.scale
            leftPadding: Theme.space
            text: App.first.words.examples
            verticalAlignment: Text.AlignVCenter
            color: Theme.muted
            font.pixelSize: Theme.small
        }
        Repeater {
            model: App.first.welcome.examples
            PlainButton {
                required property string modelData
                text: modelData
                explanation: App.first.words.examples + " " + modelData
                onClicked: search.begin(modelData)
            }
        }
    }
    PlainText {
        width: page.inner
        visible: text !== "" && search.isEmpty
        text: App.first.welcome.locating
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
        color: App.first.welcome.isTroubled ? Theme.text : Theme.muted
        font.pixelSize: Theme.small
        Accessible.role: App.first.welcome.isTroubled ? Accessible.AlertMessage : Accessible.StaticText
        Accessible.name: text
    }
    PlainText {
        width: page.inner
        visible: text !== ""
        text: App.problem
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
        color: Theme.text
        font.pixelSize: Theme.body
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }

    Card {
        visible: search.isEmpty
        width: page.inner
        Grid {
            id: services
            readonly property real column: (width - (columns - 1) * columnSpacing) / columns
            width: parent.width
            columns: width > 520 * Theme.scale ? 2 : 1
            columnSpacing: 3 * Theme.space
            rowSpacing: 1.5 * Theme.space
            PlainText {
                width: services.column
                text: App.first.words.services
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
                color: Theme.text
                font.pixelSize: Theme.small
                font.weight: Font.DemiBold
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            Repeater {
                model: App.first.sources
                Column {
                    id: source
                    required property string purpose
                    required property string names
                    required property string sentence
                    width: services.column
                    Accessible.role: Accessible.StaticText
                    Accessible.name: sentence
                    PlainText {
                        width: parent.width
                        text: source.purpose
                        wrapMode: Text.Wrap
                        horizontalAlignment: Text.AlignLeft
                        color: Theme.muted
                        font.pixelSize: Theme.tiny
                    }
                    PlainText {
                        width: parent.width
                        text: source.names
                        wrapMode: Text.Wrap
                        horizontalAlignment: Text.AlignLeft
                        color: Theme.text
                        font.pixelSize: Theme.small
                    }
                }
            }
        }
    }
}
