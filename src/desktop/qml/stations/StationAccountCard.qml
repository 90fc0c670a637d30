// Links a Netatmo account: with the browser, which is waited for, or with a refresh token.
import QtQuick
import NimbaraPages
import NimbaraItems

Card {
    id: card

    readonly property bool hasFields: !App.station.now.needsFields || (identifier.text !== "" && secret.text !== "")

    title: App.station.words.account

    component Words: PlainText {
        width: parent ? parent.width : 0
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignLeft
        color: Theme.muted
        font.pixelSize: Theme.small
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    // What is copied from here.
    component Address: TextInput {
        width: parent ? parent.width : 0
        readOnly: true
        selectByMouse: true
        activeFocusOnTab: true
        wrapMode: TextInput.WrapAnywhere
        color: Theme.text
        selectionColor: Theme.accent
        selectedTextColor: Theme.accentText
        font.pixelSize: Theme.small
        font.weight: Font.DemiBold
        font.underline: activeFocus
    }

    Connections {
        target: App.station
        function onLinked() {
            secret.clear();
            token.clear();
        }
    }

    Column {
        width: parent.width
        spacing: Theme.space

        Column {
            width: parent.width
            spacing: Theme.space
            visible: !App.station.now.isWaiting

            Words { text: App.station.words.accountHint }
            Address {
                text: App.station.now.redirect
                Accessible.name: App.station.words.accountHint + " " + text
            }
            StationField {
                id: identifier
                width: parent.width
                title: App.station.words.id
            }
            StationField {
                id: secret
                width: parent.width
                title: App.station.words.secret
                echoMode: TextInput.Password
            }
            PlainButton {
                text: App.station.words.browser
                isMain: true
                enabled: card.hasFields && !App.station.now.isBusy
                onClicked: App.station.linkAccount(identifier.text, secret.text, "")
            }
            StationField {
                id: token
                width: parent.width
                title: App.station.words.token
                echoMode: TextInput.Password
            }
            PlainButton {
                text: App.station.words.useToken
                enabled: card.hasFields && token.text !== "" && !App.station.now.isBusy
                onClicked: App.station.linkAccount(identifier.text, secret.text, token.text)
            }
        }
        Column {
            width: parent.width
            spacing: Theme.space
            visible: App.station.now.isWaiting

            Words {
                text: App.station.words.waiting
                Accessible.role: Accessible.AlertMessage
            }
            Address {
                text: App.station.now.consentUrl
                Accessible.name: App.station.words.waiting + " " + text
            }
            Flow {
                width: parent.width
                spacing: Theme.space
                PlainButton {
                    text: App.station.words.browser
                    onClicked: App.station.openConsent()
                }
                PlainButton {
                    text: App.station.words.cancel
                    onClicked: App.station.cancel()
                }
            }
        }
    }
}
