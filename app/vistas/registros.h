#pragma once

#include "inicio/orcalinapp.h"

#include <QQmlEngine>

// The logic's types as QML knows them. Declared here so that the logic itself
// needs no QML.

struct PantallaQml {
    Q_GADGET
    QML_FOREIGN(Pantalla)
    QML_NAMED_ELEMENT(Pantalla)
    QML_UNCREATABLE("OrcalinApp makes the screens.")
};

struct ExploradorQml {
    Q_GADGET
    QML_FOREIGN(Explorador)
    QML_NAMED_ELEMENT(Explorador)
    QML_UNCREATABLE("OrcalinApp makes the screens.")
};

struct FilasQml {
    Q_GADGET
    QML_FOREIGN(Filas)
    QML_NAMED_ELEMENT(Filas)
    QML_UNCREATABLE("The browser has its list.")
};

struct OrigenesQml {
    Q_GADGET
    QML_FOREIGN(Origenes)
    QML_NAMED_ELEMENT(Origenes)
    QML_UNCREATABLE("The compression screen has its list.")
};

struct SalidaQml {
    Q_GADGET
    QML_FOREIGN(Salida)
    QML_NAMED_ELEMENT(Salida)
    QML_UNCREATABLE("The application has one.")
};

struct OrcalinAppQml {
    Q_GADGET
    QML_FOREIGN(OrcalinApp)
    QML_NAMED_ELEMENT(OrcalinApp)
    QML_UNCREATABLE("There is one application.")
};
