import QtQuick

// A password field. The text stays out of input methods' memories.
Campo {
    placeholderText: "Contraseña"
    echoMode: TextInput.Password
    inputMethodHints: Qt.ImhHiddenText | Qt.ImhSensitiveData | Qt.ImhNoPredictiveText
    // Qt 6.4 hides the name of a password field together with its text.
    Accessible.description: placeholderText
}
