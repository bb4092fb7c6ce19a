import QtQuick
import QtQuick.Controls.Fusion

Button {
    implicitHeight: Math.max(32, implicitContentHeight + topPadding + bottomPadding)
    leftPadding: 14
    rightPadding: 14
    font.pixelSize: Tema.cuerpo
    Accessible.name: text
    // Qt 6.4 does not tell the accessibility bus that a control is disabled.
    Accessible.description: enabled ? "" : "no disponible"
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}
