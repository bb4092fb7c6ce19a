import QtQuick
import QtQuick.Templates as T

// What the pointer says after resting on something.
T.ToolTip {
    id: pista

    delay: 600
    margins: 6
    padding: 6
    x: parent ? (parent.width - implicitWidth) / 2 : 0
    y: parent ? parent.height + 3 : 0
    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: contentHeight + topPadding + bottomPadding
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent

    contentItem: Texto {
        text: pista.text
        font.pixelSize: Tema.leyenda
        elide: Text.ElideNone
        wrapMode: Text.WrapAnywhere
        maximumLineCount: 12
    }
    background: Rectangle {
        radius: 3
        color: Tema.paleta.base
        border.color: Tema.borde
    }
}
