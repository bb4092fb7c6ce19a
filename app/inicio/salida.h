#pragma once

#include "trabajos/enmarcha.h"

#include <QObject>

/// The way out of the application: what is being saved or taken out is not given
/// up without a question. Main thread only.
class Salida : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool pregunta READ pregunta NOTIFY preguntaCambia)
    Q_PROPERTY(QString titular READ titular NOTIFY preguntaCambia)
    Q_PROPERTY(QString consecuencia READ consecuencia NOTIFY preguntaCambia)
    Q_PROPERTY(QString rotuloSeguir READ rotuloSeguir NOTIFY preguntaCambia)

public:
    /// `enMarcha`: what it looks at; must outlive it.
    explicit Salida(EnMarcha &enMarcha = EnMarcha::todos(), QObject *padre = nullptr);

    /// Whether the question stands. It goes when there is nothing left to ask
    /// about.
    [[nodiscard]] bool pregunta() const { return m_pregunta; }
    /// Its words, by what is under way.
    [[nodiscard]] QString titular() const;
    [[nodiscard]] QString consecuencia() const;
    [[nodiscard]] QString rotuloSeguir() const;

public slots:
    /// The user wants to leave: leaves, or asks. Returns whether it leaves.
    bool pide();
    /// The answers: to stay, and to leave all the same. What is left of the
    /// jobs then is ended where the application ends.
    void sigue();
    void sal();

signals:
    void preguntaCambia();
    /// The application is to end.
    void sale();

private:
    [[nodiscard]] QString palabras(const QString &guardar, const QString &recuperar,
                                   const QString &ambas) const;
    void mira();
    void ponPregunta(bool pregunta);

    EnMarcha &m_enMarcha;
    bool m_pregunta = false;
};
