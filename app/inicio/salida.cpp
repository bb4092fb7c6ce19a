#include "salida.h"

Salida::Salida(EnMarcha &enMarcha, QObject *padre)
    : QObject(padre)
    , m_enMarcha(enMarcha) {
    connect(&m_enMarcha, &EnMarcha::mengua, this, &Salida::mira);
}

// Of saving, of taking out, or of both.
QString Salida::palabras(const QString &guardar, const QString &recuperar,
                         const QString &ambas) const {
    if (!m_enMarcha.hay(Obra::Recuperar))
        return guardar;
    return m_enMarcha.hay(Obra::Guardar) ? ambas : recuperar;
}

QString Salida::titular() const {
    return palabras(QStringLiteral("¿Salir sin terminar de guardar?"),
                    QStringLiteral("¿Salir sin terminar de recuperar?"),
                    QStringLiteral("¿Salir sin terminar de guardar y de recuperar?"));
}

QString Salida::consecuencia() const {
    const auto guardar =
        QStringLiteral("Lo que se está guardando se cancela y no queda nada a medias.");
    const auto recuperar =
        QStringLiteral("Lo que ya se ha recuperado se queda; el resto sigue solo en el archivo.");
    return palabras(guardar, recuperar, guardar + QLatin1Char(' ') + recuperar);
}

QString Salida::rotuloSeguir() const {
    return palabras(QStringLiteral("Seguir guardando"), QStringLiteral("Seguir recuperando"),
                    QStringLiteral("Seguir"));
}

bool Salida::pide() {
    ponPregunta(m_enMarcha.hay());
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

void Salida::mira() {
    if (!m_enMarcha.hay())
        ponPregunta(false);
    else if (m_pregunta)
        emit preguntaCambia(); // its words
}

void Salida::ponPregunta(bool pregunta) {
    if (m_pregunta == pregunta)
        return;
    m_pregunta = pregunta;
    emit preguntaCambia();
}
