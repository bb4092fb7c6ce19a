#pragma once

#include "delegado.h"
#include "pantallas/explorador.h"
#include "pantallas/pantalla.h"
#include "salida.h"
#include "trabajos/enmarcha.h"

#include <QObject>

#include <memory>
#include <optional>

class Abierto;
class Escritorio;

/// The application: picks the window's screen by what is open, and has its
/// commands. Exactly one of the two screens exists. Main thread only.
class OrcalinApp : public QObject {
    Q_OBJECT
    Q_PROPERTY(Pantalla *pantalla READ pantalla NOTIFY pantallaCambia)
    Q_PROPERTY(Explorador *explorador READ explorador NOTIFY pantallaCambia)
    Q_PROPERTY(Salida *salida READ salida CONSTANT)

public:
    /// The desktop and the list of jobs must outlive the application.
    OrcalinApp(std::unique_ptr<Delegado> delegado, Escritorio &escritorio,
               EnMarcha &enMarcha = EnMarcha::todos());
    ~OrcalinApp() override;

    [[nodiscard]] Delegado &delegado() const { return *m_delegado; }
    /// The compression screen, or nothing while an archive is shown.
    [[nodiscard]] Pantalla *pantalla() const { return m_pantalla.get(); }
    /// The archive browser, or nothing.
    [[nodiscard]] Explorador *explorador() const { return m_explorador.get(); }
    [[nodiscard]] Salida *salida() { return &m_salida; }

public slots:
    /// Asks for an archive and shows it.
    void abrirDialogo();
    /// Leaves the archive for the compression screen.
    void guardarAlgo();

signals:
    void pantallaCambia();

private:
    // What tells one screen from the next: a change of it makes a fresh one.
    struct Identidad {
        std::optional<QUrl> archivo;
        QByteArray rutas; // of what was handed in, joined with "|"
        bool operator==(const Identidad &) const = default;
    };

    void avisaDelFinal(const Trabajo &trabajo);
    void pideBody();
    void body();
    [[nodiscard]] Identidad identidad() const;
    [[nodiscard]] std::unique_ptr<Pantalla> nuevaPantalla();

    std::unique_ptr<Delegado> m_delegado;
    Escritorio &m_escritorio;
    EnMarcha &m_enMarcha;
    Abierto &m_abierto;
    Identidad m_identidad;
    bool m_pedido = false;
    Salida m_salida;
    std::unique_ptr<Pantalla> m_pantalla;
    std::unique_ptr<Explorador> m_explorador;
};
