import QtQuick
import QtQuick.Controls.Fusion
import Orcalin

// A menu as a screen reader needs it: with a name, and never open without a
// current item when the keyboard has opened it, for only items are read out.
Menu {
    id: menu

    property string nombre: title.replace("&", "")

    function primera(): int {
        let i = 0;
        while (i < count - 1 && !itemAt(i).visible)
            ++i;
        return i;
    }

    onOpened: if (Foco.marcado && currentIndex < 0) currentIndex = primera()
    onNombreChanged: contentItem.parent.Accessible.name = nombre
    Component.onCompleted: {
        contentItem.parent.Accessible.name = nombre;
        contentItem.ScrollIndicator.vertical.Accessible.ignored = true;
    }
}
