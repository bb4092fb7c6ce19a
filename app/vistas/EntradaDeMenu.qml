import QtQuick
import QtQuick.Templates as T

// A line of a menu, with the keys that do the same.
T.MenuItem {
    id: entrada

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    padding: 6
    leftPadding: 10
    rightPadding: 10
    font.pixelSize: Tema.cuerpo

    contentItem: Item {
        implicitWidth: rotulo.implicitWidth + (teclas.text === "" ? 0 : 24 + teclas.implicitWidth)
        implicitHeight: rotulo.implicitHeight
        Texto {
            id: rotulo
            text: entrada.text
            color: entrada.highlighted ? Tema.sobreDestacado : Tema.paleta.text
            Accessible.ignored: true
        }
        Texto {
            id: teclas
            anchors.right: parent.right
            text: entrada.action?.shortcut ?? ""
            color: entrada.highlighted ? Tema.sobreDestacado : Tema.secundario
            Accessible.ignored: true
        }
    }
    background: Rectangle {
        color: Tema.destacado
        visible: entrada.highlighted
    }
}
