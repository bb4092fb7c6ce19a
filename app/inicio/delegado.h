#pragma once

#include "recepcion.h"

#include <QList>
#include <QUrl>

#include <functional>
#include <memory>

/// Where other programs find the services of this one.
class SistemaDeServicios {
public:
    virtual ~SistemaDeServicios() = default;
    /// Makes what `recepcion` takes in callable. It must live on.
    virtual void registra(Recepcion &recepcion) = 0;
    /// Asks the system to read its service entries again.
    virtual void refresca() = 0;
};

/// What the application does when it starts and when it is given files to
/// open. Main thread only.
class Delegado {
public:
    /// None: there is nobody to offer services to.
    explicit Delegado(std::unique_ptr<SistemaDeServicios> sistema = nullptr);

    [[nodiscard]] Recepcion &recepcion() { return m_recepcion; }
    /// The services provider, as long as this lives.
    [[nodiscard]] const Servicios &servicios() const { return m_recepcion.servicios(); }

    /// The start-up steps, once: services, their refresh, old temporaries. The
    /// last only if `sigue`, asked when the services stand, says that this
    /// process goes on: else the copies are those of the one that does.
    void applicationDidFinishLaunching(const std::function<bool()> &sigue = [] { return true; });

    /// Files were opened with the application. The first archive among them is
    /// shown, shortly after this returns; everything else is ignored.
    static void application(const QList<QUrl> &open);

private:
    std::unique_ptr<SistemaDeServicios> m_sistema;
    Recepcion m_recepcion; // goes first: the system only refers to it
};
