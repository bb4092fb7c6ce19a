#include "listado.h"

#include "lineas.h"

#include <QRandomGenerator>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
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

// Byte `n` of a number, the highest first.
uchar octeto(quint64 numero, int n) {
    return static_cast<uchar>(numero >> (8 * (7 - n)));
}

// Random UUIDs (version 4) by the thousand. Asking the system for each would
// take longer than reading the entry that gets it; here the system only seeds.
class Uuids {
public:
    QUuid siguiente() {
        if (m_usados == m_numeros.size()) {
            m_azar.fillRange(m_numeros.data(), static_cast<qsizetype>(m_numeros.size()));
            m_usados = 0;
        }
        const quint64 alto = m_numeros[m_usados++];
        const quint64 bajo = m_numeros[m_usados++];
        const auto version = static_cast<ushort>((alto & 0x0fffU) | 0x4000U);
        const auto variante = static_cast<uchar>((octeto(bajo, 0) & 0x3fU) | 0x80U);
        return {static_cast<uint>(alto >> 32U),
                static_cast<ushort>(alto >> 16U),
                version,
                variante,
                octeto(bajo, 1),
                octeto(bajo, 2),
                octeto(bajo, 3),
                octeto(bajo, 4),
                octeto(bajo, 5),
                octeto(bajo, 6),
                octeto(bajo, 7)};
    }

private:
    QRandomGenerator64 m_azar = QRandomGenerator64::securelySeeded();
    std::array<quint64, 512> m_numeros{};
    size_t m_usados = m_numeros.size();
};

class Lector {
public:
    QList<Entrada> entradas;

    void lee(std::string_view linea) {
        const auto principio = cabeza(linea);
        if (!principio)
            return;
        const std::string_view campos = sinEspacios(principio->resto);
        const size_t corte = campos.find(' ');
        if (corte == std::string_view::npos)
            return;
        const std::string_view ruta = sinEspacios(campos.substr(corte));
        if (ruta.empty())
            return;
        entradas.append({m_identidades.siguiente(), lineas::texto(ruta),
                         bytesDe(campos.substr(0, corte)), principio->tipo});
    }

private:
    Uuids m_identidades;
};

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

QList<Entrada> leeListado(QByteArrayView salida) {
    if (!salida.isValidUtf8())
        return {};
    const std::string_view texto(salida.data(), static_cast<size_t>(salida.size()));
    Lector lector;
    size_t inicio = 0;
    for (size_t i = 0; i < texto.size(); ++i) {
        if (!kPuedeCortar[static_cast<unsigned char>(texto[i])])
            continue;
        if (const size_t fin = finDeLinea(texto.substr(i)); fin > 0) {
            lector.lee(texto.substr(inicio, i - inicio));
            inicio = i + fin;
            i = inicio - 1;
        }
    }
    lector.lee(texto.substr(inicio));
    return std::move(lector.entradas);
}
