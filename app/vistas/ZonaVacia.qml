import QtQuick
import QtQuick.Layouts

// The drop area with nothing selected.
Item {
    required property bool encima

    ColumnLayout {
        anchors.centerIn: parent
        width: parent.width - 40
        spacing: 8
        ImagenSistema {
            nombre: "arrow.down.doc"
            lado: 40
            tinte: parent.parent.encima ? Tema.acento : Tema.secundario
            Layout.alignment: Qt.AlignHCenter
        }
        Texto {
            text: "Arrastra aquí lo que quieras guardar"
            font.pixelSize: Math.max(15, Math.round(Tema.cuerpo * 1.15))
            font.weight: Font.Medium
            wrapMode: Text.Wrap
            maximumLineCount: 3
            elide: Text.ElideNone
            Layout.fillWidth: true
        }
        Leyenda {
            text: "una carpeta o unos archivos"
            Layout.fillWidth: true
        }
    }
}
