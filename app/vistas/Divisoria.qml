import QtQuick
import QtQuick.Layouts

Rectangle {
    color: Tema.tenue
    implicitHeight: 1
    Layout.fillWidth: true
}
