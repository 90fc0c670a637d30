// A list that opens to choose one of it. The model's entries have a `value` and a `text`.
import QtQuick
import QtQuick.Controls.Basic
import NimbaraPages

ComboBox {
    id: choice

    property var value
    property string title
    property string explanation
    signal chosen(var value)

    function reset() {
        // A list that was filled later has no count before.
        currentIndex = Qt.binding(() => choice.count > 0 ? choice.indexOfValue(choice.value) : -1);
    }

    readonly property int spokenRole: Accessible.ComboBox
    readonly property bool isExpandable: true
    readonly property bool isExpanded: popup.visible
    function press() {
        if (popup.visible)
            popup.close();
        else
            popup.open();
    }

    property real least: 160  // wide, before enlargement
    readonly property real arrow: 16 + 18 * Theme.scale
    // Its texts change with the language, and what is shown with them; their width with the size of letters.
    readonly property real widest: widestOf(count, displayText, metrics.font.pixelSize)

    function widestOf(count, shown, size) {
        let most = 0;
        for (let i = 0; i < count; ++i)
            most = Math.max(most, metrics.advanceWidth(textAt(i)));
        return most;
    }

    implicitWidth: Math.ceil(Math.min(280 * Theme.scale, Math.max(least * Theme.scale, widest + arrow + 18)))
    implicitHeight: Math.max(36 * Theme.scale, shownText.contentHeight + 12 * Theme.scale)
    width: parent && parent.width > 0 ? Math.min(implicitWidth, parent.width) : implicitWidth
    leftPadding: mirrored ? arrow : 14
    rightPadding: mirrored ? 14 : arrow
    textRole: "text"
    valueRole: "value"
    font.pixelSize: Theme.body
    Accessible.name: title + (displayText !== "" ? ": " + displayText : "")
    Accessible.description: explanation
    Keys.onReturnPressed: press()
    Keys.onEnterPressed: press()
    Component.onCompleted: reset()
    onModelChanged: reset()
    onActivated: index => {
        const wanted = valueAt(index);
        if (wanted !== value)
            chosen(wanted);
        reset();
    }

    FontMetrics {
        id: metrics
        font: choice.font
    }

    contentItem: PlainText {
        id: shownText
        text: choice.displayText
        wrapMode: Text.Wrap
        verticalAlignment: Text.AlignVCenter
        horizontalAlignment: Text.AlignLeft
        color: Theme.text
        opacity: choice.enabled ? 1 : 0.5
        font: choice.font
    }
    indicator: Sign {
        x: choice.mirrored ? 10 : choice.width - width - 10
        anchors.verticalCenter: parent.verticalCenter
        size: 18 * Theme.scale
        name: "down"
        ink: Theme.muted
    }
    background: Rectangle {
        radius: 10
        color: Theme.page
        border.width: choice.visualFocus ? 2 : 1
        border.color: choice.visualFocus ? Theme.accent : choice.hovered ? Theme.muted : Theme.outline
    }
    delegate: ItemDelegate {
        id: option
        required property int index
        readonly property int spokenRole: Accessible.ListItem
        readonly property bool isSelectable: true
        readonly property bool isCurrent: choice.currentIndex === index
        function press() {
            clicked();
        }
        width: ListView.view ? ListView.view.width : choice.width
        height: 40 * Theme.scale
        highlighted: choice.highlightedIndex === index
        Accessible.name: choice.textAt(index)
        contentItem: PlainText {
            text: choice.textAt(option.index)
            elide: Text.ElideRight
            verticalAlignment: Text.AlignVCenter
            horizontalAlignment: Text.AlignLeft
            color: Theme.text
            font.pixelSize: Theme.body
            font.weight: choice.currentIndex === option.index ? Font.DemiBold : Font.Normal
        }
        background: Rectangle {
            radius: 8
            color: option.highlighted ? Theme.raised : "transparent"
        }
    }
    popup: Popup {
        y: choice.height + 4
        width: choice.width
        height: Math.min(contentItem.implicitHeight + 12, choice.Window.height - 24)
        topMargin: 12
        bottomMargin: 12
        padding: 6
        contentItem: ListView {
            clip: true
            implicitHeight: contentHeight
            model: choice.popup.visible ? choice.delegateModel : null
            currentIndex: choice.highlightedIndex
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ThinBar {}
        }
        background: Rectangle {
            radius: 12
            color: Theme.card
            border.color: Theme.outline
        }
    }
}
