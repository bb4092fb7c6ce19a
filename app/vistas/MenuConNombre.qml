import QtQuick
import QtQuick.Controls.Fusion
import Orcalin

// A menu as a screen reader needs it: with a name, and with a current item when
// the keyboard has opened it, for only items are read out.
Menu {
    id: menu

    property string nombre: title.replace("&", "")
    // The one that the keyboard begins with.
    property int primera: 0

    onAboutToShow: if (Foco.marcado) currentIndex = primera
    // The very first time there are no items yet before.
    onOpened: if (Foco.marcado && currentIndex < 0) currentIndex = primera
    onNombreChanged: contentItem.parent.Accessible.name = nombre
    Component.onCompleted: {
        contentItem.parent.Accessible.name = nombre;
        contentItem.ScrollIndicator.vertical.Accessible.ignored = true;
    }
}
