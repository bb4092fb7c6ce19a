import QtQuick
import QtQuick.Templates as T

// The menus of the window.
T.MenuBar {
    id: barra

    implicitWidth: contentWidth
    implicitHeight: contentHeight

    delegate: T.MenuBarItem {
        id: entrada

        implicitWidth: implicitContentWidth + leftPadding + rightPadding
        implicitHeight: implicitContentHeight + topPadding + bottomPadding
        padding: 6
        leftPadding: 10
        rightPadding: 10
        Accessible.role: Accessible.MenuItem
        Accessible.name: menu.title.replace("&", "")

        contentItem: Texto {
            // The letter that opens it together with Alt is underlined.
            text: entrada.text.replace(/&(.)/, "<u>$1</u>")
            textFormat: Text.StyledText
            color: entrada.highlighted ? Tema.sobreDestacado : Tema.texto
            Accessible.ignored: true
        }
        background: Rectangle {
            color: Tema.destacado
            visible: entrada.highlighted
        }
    }
    contentItem: Row {
        Repeater { model: barra.contentModel }
    }
    background: Divisoria { y: barra.height - height }
}
