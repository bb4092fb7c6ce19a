import QtQuick

// A password field. The text stays out of input methods' memories.
Campo {
    // What a screen reader says besides.
    property string anuncio

    placeholderText: "Contraseña"
    echoMode: TextInput.Password
    inputMethodHints: Qt.ImhHiddenText | Qt.ImhSensitiveData | Qt.ImhNoPredictiveText
    // Qt 6.4 hides the name of a password field together with its text, and
    // makes the placeholder its description, once it is complete.
    onActiveFocusChanged: {
        if (anuncio !== "")
            Accessible.description = placeholderText + ". " + anuncio;
    }
    Accessible.description: placeholderText
}
