import QtQuick
import QtQuick.Templates as T

T.ProgressBar {
    id: barra

    implicitHeight: 8
    background: Rectangle {
        radius: height / 2
        color: Tema.apagado
    }
    contentItem: Item {
        clip: true
        Rectangle {
            id: relleno
            property real paso: 0

            height: parent.height
            radius: height / 2
            color: Tema.acento
            width: barra.indeterminate ? parent.width * 0.25 : barra.visualPosition * parent.width
            x: barra.indeterminate ? paso * (parent.width - width) : 0

            SequentialAnimation on paso {
                running: barra.indeterminate && barra.visible
                loops: Animation.Infinite
                NumberAnimation { from: 0; to: 1; duration: 900; easing.type: Easing.InOutQuad }
                NumberAnimation { from: 1; to: 0; duration: 900; easing.type: Easing.InOutQuad }
            }
        }
    }
}
