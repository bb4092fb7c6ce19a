#pragma once

/// What the application is called where programs find each other: its name on
/// the session bus, that of its desktop file and of its icon.
inline constexpr auto kIdentidad = "es.orcalin.Orcalin";

/// Its object on the session bus: the path that org.freedesktop.Application
/// derives from the name.
inline constexpr auto kObjetoPropio = "/es/orcalin/Orcalin";
