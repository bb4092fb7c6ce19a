import QtQuick
import QtQuick.Controls.Fusion
import QtQuick.Layouts

Item {
    id: panel

    required property string texto

    ColumnLayout {
        anchors.centerIn: parent
        width: parent.width
        spacing: 12
        BusyIndicator {
            Accessible.name: panel.texto
            Layout.alignment: Qt.AlignHCenter
        }
        Leyenda {
            text: panel.texto
            Layout.fillWidth: true
        }
    }
}
