// The brief, with a button that reads it out where the user wants that.
import QtQuick
import NimbaraItems
import NimbaraPages

LinesCard {
    id: card

    title: App.words.brief
    lines: App.now.brief

    PlainButton {
        parent: card
        visible: App.speech.isOffered
        anchors.right: parent.right
        anchors.rightMargin: Theme.space
        y: Theme.space
        sign: App.speech.isSpeaking ? "pause" : "speak"
        explanation: App.speech.isSpeaking ? App.words.silenceBrief : App.words.speakBrief
        onClicked: App.speech.toggle(card.lines)
    }
}
