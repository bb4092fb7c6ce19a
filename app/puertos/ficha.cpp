#include "ficha.h"

#include <QtGlobal>

namespace {

constexpr auto kX11 = "DESKTOP_STARTUP_ID";
constexpr auto kWayland = "XDG_ACTIVATION_TOKEN";

} // namespace

Ficha Ficha::delEntorno() {
    return {qgetenv(kX11), qgetenv(kWayland)};
}

void Ficha::quitaDelEntorno() {
    qunsetenv(kX11);
    qunsetenv(kWayland);
}
