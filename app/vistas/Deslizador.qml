import QtQuick
import QtQuick.Templates as T

// The scroll bar of a list, there while there is something to scroll. The keys
// that scroll are the list's.
T.ScrollBar {
    id: barra

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    padding: 2
    visible: size < 1
    minimumSize: 0.08
    Accessible.ignored: true

    contentItem: Rectangle {
        implicitWidth: 6
        implicitHeight: 6
        radius: 3
        color: barra.pressed ? Tema.acento : Tema.borde
    }
}
