#include "comun/marcha.h"

#include "comun/consola.h"
#include "comun/medidas.h"

#include <algorithm>
#include <utility>

namespace orcalin {
namespace {

using Reloj = std::chrono::steady_clock;

constexpr std::chrono::milliseconds intervalo{100};
constexpr std::chrono::seconds antesDeEstimar{2};
constexpr std::uint64_t todo = 1000; // thousandths
constexpr std::uint64_t minimoParaEstimar = 10;
constexpr std::size_t anchoBarra = 20;

std::string enMinutos(std::uint64_t segundos) {
    const std::string resto = std::to_string(segundos % 60);
    return std::to_string(segundos / 60) + (resto.size() < 2 ? ":0" : ":") + resto;
}

std::string mebis(std::uint64_t bytes) {
    return std::to_string(bytes / mebi);
}

} // namespace

std::string renglonDeMarcha(std::string_view que, std::uint64_t milesimas, std::string_view detalle,
                            Reloj::duration transcurrido) {
    const std::size_t lleno = anchoBarra * milesimas / todo;
    std::string texto(que);
    texto += " [" + std::string(lleno, '#') + std::string(anchoBarra - lleno, ' ') + "] ";
    texto += std::to_string(milesimas / 10) + "," + std::to_string(milesimas % 10) + " %  ";
    texto += detalle;
    if (transcurrido >= antesDeEstimar && milesimas >= minimoParaEstimar && milesimas < todo) {
        const auto s = std::chrono::duration_cast<std::chrono::seconds>(transcurrido).count();
        const auto quedan = static_cast<std::uint64_t>(s) * (todo - milesimas) / milesimas;
        texto += "  quedan " + enMinutos(quedan);
    }
    return texto;
}

Marcha::Marcha(std::string queDado, std::function<Punto()> dondeDado)
    : que(std::move(queDado))
    , donde(std::move(dondeDado)) {
    if (hayTerminal())
        hilo = std::thread([this] { sigue(); });
}

Marcha::~Marcha() {
    {
        const std::scoped_lock guardia(turno);
        acabada = true;
    }
    aviso.notify_one();
    if (hilo.joinable())
        hilo.join();
}

void Marcha::sigue() {
    const auto inicio = Reloj::now();
    std::unique_lock guardia(turno);
    while (!aviso.wait_for(guardia, intervalo, [this] { return acabada; })) {
        const Punto punto = donde();
        const std::uint64_t total = std::max<std::uint64_t>(punto.total, 1);
        const std::uint64_t hecho = std::min(punto.hecho, total);
        const auto razon = static_cast<double>(hecho) / static_cast<double>(total);
        redibuja(renglonDeMarcha(que, static_cast<std::uint64_t>(razon * todo),
                                 mebis(hecho) + " de " + mebis(total) + " MiB",
                                 Reloj::now() - inicio));
    }
    borraRenglon();
}

} // namespace orcalin
