import QtQuick
import QtQuick.Templates as T
import Orcalin

// A menu as a screen reader needs it: with a name, and with a current item when
// the keyboard has opened it, for only items are read out.
T.Menu {
    id: menu

    property string nombre: title.replace("&", "")
    // The one that the keyboard begins with.
    property int primera: 0

    onAboutToShow: if (Foco.marcado) currentIndex = primera
    // The very first time there are no items yet before.
    onOpened: if (Foco.marcado && currentIndex < 0) currentIndex = primera
    onNombreChanged: contentItem.parent.Accessible.name = nombre
    Component.onCompleted: contentItem.parent.Accessible.name = nombre

    implicitWidth: Math.max(200, contentWidth + leftPadding + rightPadding)
    implicitHeight: contentHeight + topPadding + bottomPadding
    padding: 1

    delegate: EntradaDeMenu {}
    contentItem: ListView {
        // As wide as the widest, which has no say in the width of a list.
        implicitWidth: {
            let ancho = 0;
            for (let i = 0; i < menu.count; ++i)
                ancho = Math.max(ancho, menu.itemAt(i).implicitWidth);
            return ancho;
        }
        implicitHeight: contentHeight
        model: menu.contentModel
        interactive: false
        currentIndex: menu.currentIndex
    }
    background: Rectangle {
        radius: 3
        color: Tema.paleta.base
        border.color: Tema.borde
    }
}
