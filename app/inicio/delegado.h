#pragma once

#include <QList>
#include <QUrl>

#include <functional>
#include <memory>

/// How the application offers its services to other programs.
class ProveedorDeServicios {
public:
    virtual ~ProveedorDeServicios() = default;
    /// Makes the services callable.
    virtual void registra() = 0;
    /// Asks the system to read its service entries again.
    virtual void refresca() = 0;
};

/// What the application does when it starts and when it is given files to
/// open. Main thread only.
class Delegado {
public:
    /// Owns the services provider; none: there is nobody to offer services to.
    explicit Delegado(std::unique_ptr<ProveedorDeServicios> servicios = nullptr);

    /// The start-up steps, once: services, their refresh, old temporaries. The
    /// last only if `sigue`, asked when the services stand, says that this
    /// process goes on: else the copies are those of the one that does.
    void applicationDidFinishLaunching(const std::function<bool()> &sigue = [] { return true; });

    /// Files were opened with the application. The first archive among them is
    /// shown, shortly after this returns; everything else is ignored.
    static void application(const QList<QUrl> &open);

private:
    std::unique_ptr<ProveedorDeServicios> m_servicios;
};
