import QtQuick
import QtQuick.Templates as T

// Something is under way, nobody knows for how long.
T.BusyIndicator {
    id: giro

    property color tinte: Tema.secundario
    readonly property int puntos: 8

    implicitWidth: 36
    implicitHeight: 36
    Accessible.ignored: true

    contentItem: Item {
        Repeater {
            model: giro.running ? giro.puntos : 0
            Rectangle {
                required property int index
                readonly property real angulo: 2 * Math.PI * index / giro.puntos
                readonly property real lado: giro.availableWidth / 6

                width: lado
                height: lado
                radius: lado / 2
                x: (giro.availableWidth - lado) / 2 * (1 + Math.sin(angulo))
                y: (giro.availableHeight - lado) / 2 * (1 - Math.cos(angulo))
                color: giro.tinte
                opacity: 0.2 + 0.8 * ((index - giro.paso + giro.puntos) % giro.puntos) / giro.puntos
            }
        }
    }

    // By steps: a picture that changes all the time costs a processor.
    property int paso: 0
    Timer {
        running: giro.running && giro.visible
        repeat: true
        interval: 100
        onTriggered: giro.paso = (giro.paso + 1) % giro.puntos
    }
}
