import QtQuick
import Host

Window {
    title: "Quick host"
    width: 390
    height: 840
    visible: true

    Text {
        id: heading
        height: 40
        verticalAlignment: Text.AlignVCenter
        text: "The host's own heading"
    }

    Paywall {
        id: paywall
        objectName: "paywall"
        anchors { top: heading.bottom; bottom: parent.bottom; left: parent.left; right: parent.right }
        focus: true

        // What assistive programs see: an item without a look over each view.
        Repeater {
            model: paywall.accessibleViews
            Item {
                required property var modelData
                required property int index
                x: modelData.x; y: modelData.y
                width: modelData.width; height: modelData.height
                Accessible.role: modelData.isPressable ? Accessible.Button : Accessible.StaticText
                Accessible.name: modelData.name
                Accessible.onPressAction: paywall.press(index)
            }
        }
    }
}
