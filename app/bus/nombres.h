#pragma once

#include "puertos/identidad.h"

/// The application on the session bus: one object, with both interfaces.
///
///     gdbus introspect --session --dest es.orcalin.Orcalin
///         --object-path /es/orcalin/Orcalin
namespace bus {

constexpr auto kNombre = kIdentidad;
constexpr auto kRuta = kObjetoPropio;
constexpr auto kServicios = "es.orcalin.Servicios";
constexpr auto kAplicacion = "org.freedesktop.Application";

/// The D-Bus error of a service that was refused; its message is for the user.
constexpr auto kRechazo = "es.orcalin.Servicios.Error";

/// The action of org.freedesktop.Application that leaves the application.
constexpr auto kAccionSalir = "salir";

/// The keys of org.freedesktop.Application's platform data.
constexpr auto kFichaX11 = "desktop-startup-id";
constexpr auto kFichaWayland = "activation-token";

} // namespace bus
