#pragma once

#include <memory>

struct Ficha;
class OrcalinApp;
class QObject;
class QQmlComponent;
class QQmlEngine;

/// The drawing. Main thread only.
namespace vistas {

/// What must be settled before the application object is made: the renderer,
/// unless the user's environment names one.
void prepara();

/// The main window. `app` must outlive it.
class Ventana {
public:
    /// Only begins to read what the window is drawn from, on a thread of the
    /// QML engine; alFrente waits for that.
    explicit Ventana(OrcalinApp &app);
    ~Ventana();
    Ventana(const Ventana &) = delete;
    Ventana &operator=(const Ventana &) = delete;

    /// Shows it, made by the first call, and brings it to the front (see
    /// traeAlFrente). False when it could not be made; the reason is on stderr.
    [[nodiscard]] bool alFrente(const Ficha &ficha);

private:
    void haz();

    OrcalinApp &m_app;
    std::unique_ptr<QQmlEngine> m_motorQml;
    std::unique_ptr<QQmlComponent> m_leida;
    std::unique_ptr<QObject> m_raiz; // goes before its engine
};

} // namespace vistas
