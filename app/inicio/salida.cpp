#include "salida.h"

#include "motor/enmarcha.h"

Salida::Salida(QObject *padre)
    : QObject(padre) {
    connect(&EnMarcha::compresiones(), &EnMarcha::acaban, this, &Salida::sigue);
}

bool Salida::pide() {
    ponPregunta(EnMarcha::compresiones().hay());
    if (!m_pregunta)
        emit sale();
    return !m_pregunta;
}

void Salida::sigue() {
    ponPregunta(false);
}

void Salida::sal() {
    ponPregunta(false);
    emit sale();
}

void Salida::ponPregunta(bool pregunta) {
    if (m_pregunta == pregunta)
        return;
    m_pregunta = pregunta;
    emit preguntaCambia();
}
