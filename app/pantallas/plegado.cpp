#include "plegado.h"

#include "textos/lineas.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <cstring>

namespace {

constexpr size_t npos = std::string_view::npos;

char minuscula(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string pliega(std::string_view utf8) {
    const bool ascii = std::all_of(utf8.begin(), utf8.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (!ascii)
        return lineas::texto(utf8)
            .toCaseFolded()
            .normalized(QString::NormalizationForm_C)
            .toStdString();
    std::string plegado(utf8.size(), '\0');
    std::transform(utf8.begin(), utf8.end(), plegado.begin(), minuscula);
    return plegado;
}

// For a long text: glibc's memmem has ways that nothing in the standard library
// comes near. For a path its preparations cost more than they save.
size_t busca(std::string_view texto, std::string_view aguja) {
    const void *sitio = ::memmem(texto.data(), texto.size(), aguja.data(), aguja.size());
    return sitio == nullptr ? npos
                            : static_cast<size_t>(static_cast<const char *>(sitio) - texto.data());
}

// The character that starts here; the text is valid UTF-8.
char32_t caracter(std::string_view texto) {
    const auto primero = static_cast<unsigned char>(texto.front());
    const size_t largo = primero < 0xe0 ? 2 : primero < 0xf0 ? 3 : 4;
    char32_t valor = primero & (0xffU >> (largo + 1));
    for (size_t i = 1; i < largo; ++i)
        valor = (valor << 6) | (static_cast<unsigned char>(texto[i]) & 0x3fU);
    return valor;
}

// Letters begin characters of their own, but for the Hangul that are put
// together of several. Spares nearly every search the finder below.
bool esLetraSuelta(char32_t c) {
    const bool jamo = (c >= 0x1100 && c <= 0x11ff) || (c >= 0xa960 && c <= 0xa97f) ||
                      (c >= 0xd7b0 && c <= 0xd7ff);
    return QChar::isLetter(c) && !jamo;
}

bool acabaCaracter(std::string_view ruta, size_t sitio) {
    if (sitio == ruta.size() || static_cast<unsigned char>(ruta[sitio]) < 0x80)
        return true;
    if (esLetraSuelta(caracter(ruta.substr(sitio))))
        return true;
    const QString antes = QString::fromUtf8(ruta.data(), static_cast<qsizetype>(sitio));
    const QString todo = QString::fromUtf8(ruta.data(), static_cast<qsizetype>(ruta.size()));
    QTextBoundaryFinder finales(QTextBoundaryFinder::Grapheme, todo);
    finales.setPosition(antes.size());
    return finales.isAtBoundary();
}

bool contiene(std::string_view ruta, std::string_view aguja) {
    for (size_t desde = 0;;) {
        const size_t hallado = ruta.find(aguja, desde);
        if (hallado == npos)
            return false;
        if (acabaCaracter(ruta, hallado + aguja.size()))
            return true;
        desde = hallado + 1;
    }
}

} // namespace

void TextoPlegado::reserva(size_t rutas) {
    constexpr size_t kRutaUsual = 48;
    m_texto.reserve(rutas * kRutaUsual);
    m_finales.reserve(rutas);
}

void TextoPlegado::anade(std::string_view ruta) {
    m_texto += pliega(ruta);
    m_finales.push_back(m_texto.size());
    m_texto += '\n';
}

std::string_view TextoPlegado::ruta(size_t indice) const {
    const size_t inicio = indice == 0 ? 0 : m_finales[indice - 1] + 1;
    return std::string_view(m_texto).substr(inicio, m_finales[indice] - inicio);
}

// The entry that a place of the whole text belongs to. Mostly it is near the
// last one found: looks in steps that double before it halves.
size_t TextoPlegado::entradaDe(size_t sitio, size_t desde) const {
    size_t paso = 1;
    while (desde + paso < m_finales.size() && m_finales[desde + paso] < sitio)
        paso *= 2;
    const auto fin =
        m_finales.begin() + static_cast<ptrdiff_t>(std::min(desde + paso + 1, m_finales.size()));
    const auto inicio = m_finales.begin() + static_cast<ptrdiff_t>(desde);
    return static_cast<size_t>(std::lower_bound(inicio, fin, sitio) - m_finales.begin());
}

std::vector<uint32_t> TextoPlegado::filtra(const QString &texto) const {
    const std::string aguja = pliega(texto.toStdString());
    const std::string_view todo = m_texto;
    std::vector<uint32_t> halladas;
    size_t desde = 0;
    size_t entrada = 0;
    // No path holds a newline, so a text with one finds nothing.
    while (aguja.find('\n') == npos) {
        const size_t hallado = busca(todo.substr(desde), aguja);
        if (hallado == npos)
            break;
        entrada = entradaDe(desde + hallado, entrada);
        const std::string_view suya = ruta(entrada);
        const size_t dentro = static_cast<size_t>(todo.data() + desde + hallado - suya.data());
        const bool vale =
            acabaCaracter(suya, dentro + aguja.size()) || contiene(suya.substr(dentro + 1), aguja);
        if (vale)
            halladas.push_back(static_cast<uint32_t>(entrada));
        desde = m_finales[entrada];
    }
    return halladas;
}

std::vector<uint32_t> TextoPlegado::filtra(const QString &texto,
                                           std::span<const uint32_t> entre) const {
    const std::string aguja = pliega(texto.toStdString());
    std::vector<uint32_t> halladas;
    std::copy_if(entre.begin(), entre.end(), std::back_inserter(halladas),
                 [&](uint32_t indice) { return contiene(ruta(indice), aguja); });
    return halladas;
}
