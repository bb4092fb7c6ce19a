import QtQuick
import QtQuick.Controls.Fusion

// A line of text that never breaks the layout: names can be of any length and
// hold anything, so nothing in them is taken for markup.
Label {
    textFormat: Text.PlainText
    horizontalAlignment: Text.AlignHCenter
    elide: Text.ElideMiddle
    color: Tema.texto
    font.pixelSize: Tema.cuerpo
    maximumLineCount: 1
}
