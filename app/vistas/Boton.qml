import QtQuick
import QtQuick.Controls.Fusion

Button {
    implicitHeight: Math.max(32, implicitContentHeight + topPadding + bottomPadding)
    Accessible.name: text
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}
