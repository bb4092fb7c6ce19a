#pragma once

#include <QObject>

/// The way out of the application: a compression under way is not given up
/// without a question. Main thread only.
class Salida : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool pregunta READ pregunta NOTIFY preguntaCambia)

public:
    explicit Salida(QObject *padre = nullptr);

    /// Whether the question stands. It goes when there is nothing left to ask
    /// about.
    [[nodiscard]] bool pregunta() const { return m_pregunta; }

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
    void ponPregunta(bool pregunta);

    bool m_pregunta = false;
};
