#include "frentex11.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <xcb/xcb.h>

namespace {

struct Libera {
    void operator()(void *memoria) const { std::free(memoria); }
    void operator()(xcb_connection_t *conexion) const { xcb_disconnect(conexion); }
};
template<typename T>
using Propio = std::unique_ptr<T, Libera>;

xcb_atom_t atomo(xcb_connection_t *conexion, const char *nombre) {
    const auto peticion =
        xcb_intern_atom(conexion, 0, static_cast<uint16_t>(std::strlen(nombre)), nombre);
    const Propio<xcb_intern_atom_reply_t> respuesta(
        xcb_intern_atom_reply(conexion, peticion, nullptr));
    return respuesta ? respuesta->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_window_t raiz(xcb_connection_t *conexion) {
    return xcb_setup_roots_iterator(xcb_get_setup(conexion)).data->root;
}

void escribe(xcb_connection_t *conexion, xcb_window_t ventana, const char *propiedad,
             const QByteArray &valor) {
    xcb_change_property(conexion, XCB_PROP_MODE_REPLACE, ventana, atomo(conexion, propiedad),
                        atomo(conexion, "UTF8_STRING"), 8, static_cast<uint32_t>(valor.size()),
                        valor.constData());
}

// The server's clock, which comes only with events: a change to a window of its
// own, over a connection of its own because Qt eats the events of the other.
xcb_timestamp_t ahora() {
    const Propio<xcb_connection_t> conexion(xcb_connect(nullptr, nullptr));
    if (xcb_connection_has_error(conexion.get()) != 0)
        return XCB_CURRENT_TIME;
    const xcb_window_t ventana = xcb_generate_id(conexion.get());
    const uint32_t eventos = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(conexion.get(), 0, ventana, raiz(conexion.get()), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &eventos);
    escribe(conexion.get(), ventana, "WM_NAME", {});
    xcb_flush(conexion.get());
    while (const Propio<xcb_generic_event_t> evento{xcb_wait_for_event(conexion.get())}) {
        if ((evento->response_type & 0x7f) == XCB_PROPERTY_NOTIFY)
            return reinterpret_cast<const xcb_property_notify_event_t *>(evento.get())->time;
    }
    return XCB_CURRENT_TIME;
}

// A ficha ends in "_TIME" and when the user asked for the start.
xcb_timestamp_t momento(const QByteArray &ficha) {
    const auto marca = ficha.lastIndexOf("_TIME");
    bool vale = false;
    const uint hora = marca < 0 ? 0 : ficha.mid(marca + 5).toUInt(&vale);
    return vale && hora != 0 ? hora : ahora();
}

xcb_client_message_event_t mensaje(xcb_window_t ventana, xcb_atom_t tipo, uint8_t formato) {
    xcb_client_message_event_t evento{};
    evento.response_type = XCB_CLIENT_MESSAGE;
    evento.format = formato;
    evento.window = ventana;
    evento.type = tipo;
    return evento;
}

void manda(xcb_connection_t *conexion, const xcb_client_message_event_t &evento, uint32_t quien) {
    xcb_send_event(conexion, 0, raiz(conexion), quien, reinterpret_cast<const char *>(&evento));
}

// In pieces of what one event holds, the terminating zero among them.
void difunde(xcb_connection_t *conexion, xcb_window_t ventana, const QByteArray &texto) {
    auto evento = mensaje(ventana, atomo(conexion, "_NET_STARTUP_INFO_BEGIN"), 8);
    constexpr qsizetype kTrozo = sizeof evento.data.data8;
    for (qsizetype i = 0; i <= texto.size(); i += kTrozo) {
        std::memset(&evento.data, 0, sizeof evento.data);
        std::memcpy(&evento.data, texto.constData() + i,
                    static_cast<size_t>(std::min(kTrozo, texto.size() - i)));
        manda(conexion, evento, XCB_EVENT_MASK_PROPERTY_CHANGE);
        evento.type = atomo(conexion, "_NET_STARTUP_INFO");
    }
}

} // namespace

void x11::ponFicha(xcb_connection_t *conexion, uint32_t ventana, const QByteArray &ficha) {
    escribe(conexion, ventana, "_NET_STARTUP_ID", ficha);
}

void x11::activa(xcb_connection_t *conexion, uint32_t ventana, const QByteArray &ficha) {
    auto evento = mensaje(ventana, atomo(conexion, "_NET_ACTIVE_WINDOW"), 32);
    evento.data.data32[0] = 1; // an application asks, not a pager
    evento.data.data32[1] = momento(ficha);
    manda(conexion, evento,
          XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT);
    if (!ficha.isEmpty())
        difunde(conexion, ventana, "remove: ID=" + ficha);
    xcb_flush(conexion);
}
