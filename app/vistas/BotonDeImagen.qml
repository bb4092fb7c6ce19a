import QtQuick
import QtQuick.Templates as T
import Orcalin

// A borderless button that shows one of the system images.
T.AbstractButton {
    id: boton

    required property string nombre
    required property string texto

    implicitWidth: 24
    implicitHeight: 24
    Accessible.name: texto
    Accessible.role: Accessible.Button
    Accessible.onPressAction: clicked()

    Pista {
        text: boton.texto
        visible: boton.hovered
    }
    background: Rectangle {
        radius: 4
        color: "transparent"
        border.width: boton.activeFocus && Foco.marcado ? 2 : 0
        border.color: Tema.acento
    }
    contentItem: Item {
        ImagenSistema {
            anchors.centerIn: parent
            nombre: boton.nombre
            lado: 16
            tinte: boton.hovered ? Tema.texto : Tema.secundario
        }
    }
}
