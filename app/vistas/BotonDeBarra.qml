import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Orcalin

// A button of the tool bar: one of the system images, and a text.
T.ToolButton {
    id: boton

    required property string nombre

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    padding: 6
    Accessible.name: text
    Accessible.onPressAction: clicked()

    contentItem: RowLayout {
        spacing: 6
        ImagenSistema {
            nombre: boton.nombre
            lado: 16
            tinte: Tema.texto
        }
        Texto {
            text: boton.text
            Accessible.ignored: true
        }
    }
    background: Rectangle {
        radius: 4
        color: boton.down ? Tema.apagado : boton.hovered ? Tema.tenuisimo : "transparent"
        border.width: boton.activeFocus && Foco.marcado ? 2 : boton.hovered ? 1 : 0
        border.color: boton.activeFocus && Foco.marcado ? Tema.acento : Tema.tenue
    }
}
