import QtQuick
import QtQuick.Layouts

Item {
    id: panel

    required property string texto

    ColumnLayout {
        anchors.centerIn: parent
        width: parent.width
        spacing: 12
        Giro {
            Layout.alignment: Qt.AlignHCenter
        }
        // Nothing here can be pressed: it has the focus so that it is read out.
        Leyenda {
            text: panel.texto
            focus: true
            activeFocusOnTab: true
            Layout.fillWidth: true
        }
    }
}
