import QtQuick
import QtQuick.Controls.Fusion

Button {
    implicitHeight: Math.max(32, implicitContentHeight + topPadding + bottomPadding)
    leftPadding: 14
    rightPadding: 14
    font.pixelSize: Tema.cuerpo
    Accessible.name: text
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}
