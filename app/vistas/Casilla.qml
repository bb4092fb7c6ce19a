import QtQuick
import QtQuick.Controls.Fusion

CheckBox {
    leftPadding: 0
    font.pixelSize: Tema.cuerpo
    Accessible.name: text
}
