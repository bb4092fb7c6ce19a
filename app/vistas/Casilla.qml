import QtQuick
import QtQuick.Controls.Fusion

CheckBox {
    id: casilla

    leftPadding: 0
    spacing: 8
    font.pixelSize: Tema.cuerpo
    Accessible.name: text

    // The style's own box all but vanishes on a dark palette.
    indicator: Rectangle {
        x: casilla.leftPadding
        y: (casilla.height - height) / 2
        implicitWidth: 16
        implicitHeight: 16
        radius: 3
        color: casilla.checked ? Tema.destacado : Tema.paleta.base
        border.width: casilla.visualFocus ? 2 : 1
        border.color: casilla.visualFocus ? Tema.texto : casilla.checked ? Tema.destacado : Tema.borde

        ImagenSistema {
            visible: casilla.checked
            anchors.centerIn: parent
            nombre: "checkmark"
            lado: 12
            tinte: Tema.sobreDestacado
        }
    }
}
