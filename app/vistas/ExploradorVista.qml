import QtQuick
import QtQuick.Layouts

Item {
    id: vista

    required property string nombre

    ColumnLayout {
        anchors.centerIn: parent
        width: parent.width - 56
        spacing: 14
        ImagenSistema {
            nombre: "doc.fill"
            lado: 42
            Layout.alignment: Qt.AlignHCenter
        }
        Texto {
            text: vista.nombre
            font.weight: Font.DemiBold
            Layout.fillWidth: true
        }
    }
}
