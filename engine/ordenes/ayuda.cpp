#include "ordenes/ayuda.h"

#include "comun/texto.h"

#include <algorithm>

namespace orcalin {
namespace {

using Opciones = std::vector<const CLI::Option *>;

constexpr std::size_t anchoIzquierda = 28;

bool seMuestra(const CLI::Option *opcion) {
    return !opcion->get_group().empty();
}

Opciones deNombre(const CLI::App *app) {
    return app->get_options(
        [](const CLI::Option *o) { return o->nonpositional() && seMuestra(o); });
}

Opciones dePosicion(const CLI::App *app) {
    return app->get_options(
        [](const CLI::Option *o) { return o->get_positional() && seMuestra(o); });
}

/// `-h, --help` or `-o ARCHIVO`.
std::string comoSeEscribe(const CLI::Option *opcion) {
    std::string texto = opcion->get_name(opcion->get_positional(), true);
    for (auto coma = texto.find(','); coma != std::string::npos; coma = texto.find(',', coma + 2))
        texto.insert(coma + 1, " ");
    if (opcion->get_positional())
        return texto + (opcion->get_items_expected_max() > 1 ? "..." : "");
    return opcion->get_type_size() == 0 ? texto : texto + " " + opcion->get_type_name();
}

std::string fila(std::string izquierda, const std::string &derecha) {
    izquierda.insert(0, "  ");
    // A left side that is too long has a line to itself.
    const bool cabe = izquierda.size() + 2 <= anchoIzquierda;
    if (!cabe)
        izquierda += '\n';
    return izquierda + std::string(anchoIzquierda - (cabe ? izquierda.size() : 0), ' ') + derecha +
           "\n";
}

std::string uso(const CLI::App *app, const std::string &nombre) {
    std::string texto = "Uso: " + nombre;
    for (const auto *opcion : deNombre(app))
        if (opcion->get_required())
            texto += " " + comoSeEscribe(opcion);
    texto += app->get_subcommands({}).empty() ? " [OPCIÓN]..." : " ORDEN ...";
    for (const auto *opcion : dePosicion(app))
        texto += " " + comoSeEscribe(opcion);
    return texto + "\n";
}

std::string ordenes(const CLI::App *app) {
    std::string texto;
    for (const auto *orden : app->get_subcommands({}))
        texto += fila(orden->get_name(), orden->get_description());
    return texto.empty() ? texto : "\nÓrdenes:\n" + texto;
}

std::string tras(const std::string &texto, std::string_view marca) {
    const auto i = texto.find(marca);
    return i == std::string::npos ? texto : texto.substr(i + marca.size());
}

/// What the library's text begins with: «ORIGEN is required», «--level: …»,
/// «Could not convert: --max = …».
std::string deQuien(const CLI::ParseError &error) {
    constexpr std::string_view noConvierte = "Could not convert: ";
    std::string texto = error.what();
    if (texto.starts_with(noConvierte))
        texto.erase(0, noConvierte.size());
    return citado(
        texto.substr(0, std::min({texto.find(" is "), texto.find(" was "), texto.find(':'), texto.find(" = ")})));
}

} // namespace

std::string Ayuda::make_help(const CLI::App *app, std::string nombre,
                             CLI::AppFormatMode /*modo*/) const {
    std::string texto = uso(app, nombre) + "\n" + app->get_description() + "\n" + ordenes(app);
    texto += "\nOpciones:\n";
    for (const auto *opcion : dePosicion(app))
        texto += fila(comoSeEscribe(opcion), opcion->get_description());
    for (const auto *opcion : deNombre(app))
        texto += fila(comoSeEscribe(opcion), opcion->get_description());
    return texto + "\n" + app->get_footer();
}

std::string porque(const CLI::ParseError &error) {
    switch (static_cast<CLI::ExitCodes>(error.get_exit_code())) {
    case CLI::ExitCodes::RequiredError:
        if (std::string_view(error.what()).starts_with("A subcommand"))
            return "falta la orden";
        return "falta " + deQuien(error);
    case CLI::ExitCodes::ArgumentMismatch:
        return "sobran o faltan valores en " + deQuien(error);
    case CLI::ExitCodes::ExtrasError:
        return "no se entiende " + citado(tras(error.what(), ": "));
    case CLI::ExitCodes::ValidationError:
    case CLI::ExitCodes::ConversionError:
        return "el valor de " + deQuien(error) + " no sirve";
    case CLI::ExitCodes::RequiresError:
        return "se da una clave y falta --encrypt";
    case CLI::ExitCodes::ExcludesError:
        return "--level y --max no van juntas";
    default:
        return "la orden no se entiende";
    }
}

} // namespace orcalin
