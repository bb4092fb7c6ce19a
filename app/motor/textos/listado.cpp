#include "listado.h"

#include "lineas.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace {

constexpr size_t kCaracteresDeCabeza = 5; // the type and four that are not read

bool esAscii(std::string_view bytes) {
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

struct Cabeza {
    Caracter tipo;
    std::string_view resto;
};

// Where the characters are not one byte each. A mark behind the fifth character
// is a part of it, so the sixth has to be looked at as well.
std::optional<Cabeza> cabezaDeTexto(std::string_view linea) {
    const QString texto = lineas::texto(linea);
    QTextBoundaryFinder bordes(QTextBoundaryFinder::Grapheme, texto);
    const qsizetype primero = bordes.toNextBoundary();
    for (size_t i = 1; i < kCaracteresDeCabeza; ++i)
        bordes.toNextBoundary();
    const qsizetype quinto = bordes.position();
    if (quinto < 0 || quinto >= texto.size())
        return std::nullopt;
    const auto bytes = static_cast<size_t>(QStringView(texto).left(quinto).toUtf8().size());
    return Cabeza{Caracter(texto.left(primero)), linea.substr(bytes)};
}

std::optional<Cabeza> cabeza(std::string_view linea) {
    if (!esAscii(linea.substr(0, kCaracteresDeCabeza + 1)))
        return cabezaDeTexto(linea);
    if (linea.size() <= kCaracteresDeCabeza)
        return std::nullopt;
    return Cabeza{Caracter(linea.front()), linea.substr(kCaracteresDeCabeza)};
}

std::string_view sinEspacios(std::string_view texto) {
    return texto.substr(std::min(texto.find_first_not_of(' '), texto.size()));
}

qint64 bytesDe(std::string_view campo) {
    if (campo.starts_with('+') && !campo.starts_with("+-"))
        campo.remove_prefix(1);
    qint64 bytes = 0;
    const char *final = campo.data() + campo.size();
    const auto [leido, fallo] = std::from_chars(campo.data(), final, bytes);
    return fallo == std::errc{} && leido == final ? bytes : 0;
}

// Adds the entry that a line tells of, if it does.
void lee(std::string_view linea, Entradas &entradas) {
    const auto principio = cabeza(linea);
    if (!principio)
        return;
    const std::string_view campos = sinEspacios(principio->resto);
    const size_t corte = campos.find(' ');
    if (corte == std::string_view::npos)
        return;
    const std::string_view ruta = sinEspacios(campos.substr(corte));
    if (!ruta.empty())
        entradas.anade(principio->tipo, bytesDe(campos.substr(0, corte)), ruta);
}

// The first bytes of newline characters.
constexpr auto kPuedeCortar = [] {
    std::array<bool, 256> tabla{};
    for (const unsigned c : {0x0aU, 0x0bU, 0x0cU, 0x0dU, 0xc2U, 0xe2U})
        tabla[c] = true;
    return tabla;
}();

// Bytes of the newline character that the text begins with; 0 if it is another.
size_t finDeLinea(std::string_view texto) {
    if (texto.starts_with("\u2028") || texto.starts_with("\u2029"))
        return 3;
    if (texto.starts_with("\u0085"))
        return 2;
    return static_cast<unsigned char>(texto.front()) < 0x80 ? 1 : 0;
}

} // namespace

std::optional<Entradas> leeListado(QByteArrayView salida, size_t maximo) {
    Entradas entradas;
    if (!salida.isValidUtf8())
        return entradas;
    const std::string_view texto(salida.data(), static_cast<size_t>(salida.size()));
    size_t inicio = 0;
    for (size_t i = 0; i < texto.size(); ++i) {
        if (!kPuedeCortar[static_cast<unsigned char>(texto[i])])
            continue;
        if (const size_t fin = finDeLinea(texto.substr(i)); fin > 0) {
            lee(texto.substr(inicio, i - inicio), entradas);
            if (entradas.cuantas() > maximo)
                return std::nullopt;
            inicio = i + fin;
            i = inicio - 1;
        }
    }
    lee(texto.substr(inicio), entradas);
    if (entradas.cuantas() > maximo)
        return std::nullopt;
    entradas.completa();
    return entradas;
}
