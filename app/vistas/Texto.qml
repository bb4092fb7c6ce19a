import QtQuick
import QtQuick.Templates as T

// A line of text that never breaks the layout: names can be of any length and
// hold anything, so nothing in them is taken for markup.
T.Label {
    textFormat: Text.PlainText
    horizontalAlignment: Text.AlignHCenter
    elide: Text.ElideMiddle
    color: Tema.texto
    font.pixelSize: Tema.cuerpo
    maximumLineCount: 1
}
