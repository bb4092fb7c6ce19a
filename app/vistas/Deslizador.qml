import QtQuick
import QtQuick.Controls.Fusion

// The scroll bar of a list, there while there is something to scroll. The keys
// that scroll are the list's.
ScrollBar {
    id: barra

    policy: size < 1 ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
    minimumSize: 0.08
    Accessible.ignored: true

    // The style's own all but vanishes on a dark palette.
    contentItem: Rectangle {
        implicitWidth: 6
        implicitHeight: 6
        radius: 3
        color: barra.pressed ? Tema.acento : Tema.borde
    }
}
