#pragma once

#include <memory>

struct Ficha;
class OrcalinApp;
class QObject;
class QQmlEngine;

/// The drawing. Main thread only.
namespace vistas {

/// What must be settled before the application object is made: the renderer,
/// unless the user's environment names one.
void prepara();

/// The main window, hidden at first. `app` must outlive it.
class Ventana {
public:
    explicit Ventana(OrcalinApp &app);
    ~Ventana();
    Ventana(const Ventana &) = delete;
    Ventana &operator=(const Ventana &) = delete;

    /// False when the window could not be made; the reason is on stderr.
    [[nodiscard]] bool hecha() const;

    /// Shows it and brings it to the front (see traeAlFrente).
    void alFrente(const Ficha &ficha);

private:
    std::unique_ptr<QQmlEngine> m_motorQml;
    std::unique_ptr<QObject> m_raiz; // goes before its engine
};

} // namespace vistas
