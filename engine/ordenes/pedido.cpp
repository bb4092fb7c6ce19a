#include "ordenes/pedido.h"

#include "cifrado/cabecera_age.h"
#include "comun/fallo.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <zstd.h>

namespace orcalin {
namespace {

/// The library's help with its few words in Spanish.
void enEspanol(CLI::App &app) {
    auto formato = std::make_shared<CLI::Formatter>();
    formato->label("Usage", "Uso");
    formato->label("OPTIONS", "OPCIONES");
    formato->label("SUBCOMMAND", "ORDEN");
    formato->label("Positionals", "Argumentos");
    formato->label("REQUIRED", "obligatorio");
    formato->label("TEXT", "RUTA");
    formato->label("INT", "N");
    formato->label("Excludes", "incompatible con");
    formato->column_width(32);
    app.formatter(formato);
    app.option_defaults()->group("Opciones");
    app.set_help_flag("-h,--help", "Muestra esta ayuda")->group("Opciones");
}

CLI::App *orden(CLI::App &app, const char *nombre, const char *descripcion) {
    CLI::App *nueva = app.add_subcommand(nombre, descripcion);
    enEspanol(*nueva);
    nueva->group("Órdenes");
    return nueva;
}

void conContrasena(CLI::App &app, std::string &ruta) {
    app.add_option("--password-file", ruta, "Fichero cuyo contenido es la contraseña");
}

CLI::App *ordenComprimir(CLI::App &app, PedidoComprimir &p) {
    CLI::App *nueva = orden(app, "compress", "Guarda ficheros y carpetas en un archivo");
    nueva->add_option("ORIGEN", p.origenes, "Ficheros y carpetas")->required();
    nueva->add_option("-o", p.destino, "Archivo que se escribe")->required();
    auto *nivel = nueva->add_option("--level", p.nivel, "Nivel de compresión, de 1 a 22");
    nivel->check(CLI::Range(1, ZSTD_maxCLevel()).description(""));
    nueva->add_flag("--max", p.maximo, "Lo más pequeño posible, sin prisa")->excludes(nivel);
    nueva->add_flag("--progress", p.progreso, "Cuenta cómo va por la salida de errores");
    nueva->add_flag("--encrypt", p.cifra, "Cifra con contraseña");
    conContrasena(*nueva, p.ficheroContrasena);
    nueva->add_option("--work-factor", p.factor)->group("")->check(CLI::Range(1, factorMaximo));
    return nueva;
}

CLI::App *ordenListar(CLI::App &app, PedidoListar &p) {
    CLI::App *nueva = orden(app, "list", "Muestra lo que hay en un archivo");
    nueva->add_option("ARCHIVO", p.archivo, "Archivo que se lee")->required();
    conContrasena(*nueva, p.ficheroContrasena);
    return nueva;
}

CLI::App *ordenExtraer(CLI::App &app, PedidoExtraer &p) {
    CLI::App *nueva = orden(app, "extract", "Saca lo que hay en un archivo");
    nueva->add_option("ARCHIVO", p.archivo, "Archivo que se lee")->required();
    nueva->add_option("-o", p.destino, "Carpeta en la que se deja")->required();
    nueva->add_option("--file", p.entrada, "Solo esta entrada, escrita como la muestra list");
    conContrasena(*nueva, p.ficheroContrasena);
    return nueva;
}

/// The arguments, last first as the library wants them. It would take a path
/// between brackets for a list; «./» before it changes nothing for any of ours.
std::vector<std::string> argumentos(int argc, const char *const *argv) {
    std::vector<std::string> todos(argv + std::min(1, argc), argv + argc);
    for (auto &argumento : todos)
        if (argumento.starts_with('['))
            argumento.insert(0, "./");
    std::reverse(todos.begin(), todos.end());
    return todos;
}

std::string porque(const CLI::ParseError &error) {
    switch (static_cast<CLI::ExitCodes>(error.get_exit_code())) {
    case CLI::ExitCodes::RequiredError:
        return "falta algo en la orden";
    case CLI::ExitCodes::ArgumentMismatch:
        return "sobran o faltan valores en la orden";
    case CLI::ExitCodes::ExtrasError:
        return "hay algo en la orden que no se entiende";
    case CLI::ExitCodes::ValidationError:
    case CLI::ExitCodes::ConversionError:
        return "hay un valor que no sirve";
    case CLI::ExitCodes::ExcludesError:
        return "--level y --max no van juntas";
    default:
        return "la orden no se entiende";
    }
}

} // namespace

Pedido lee(int argc, const char *const *argv) {
    CLI::App app("Guarda lo que se le da en un solo archivo, y lo devuelve.", "orcalin");
    enEspanol(app);
    app.set_version_flag("--version", "orcalin " ORCALIN_VERSION, "Muestra la versión")
        ->group("Opciones");
    app.require_subcommand(1);
    PedidoComprimir comprimir;
    PedidoListar listar;
    PedidoExtraer extraer;
    const CLI::App *comprime = ordenComprimir(app, comprimir);
    const CLI::App *lista = ordenListar(app, listar);
    const CLI::App *extrae = ordenExtraer(app, extraer);
    try {
        app.parse(argumentos(argc, argv));
    } catch (const CLI::CallForVersion &version) {
        return PedidoTexto{version.what()};
    } catch (const CLI::CallForHelp &) {
        return PedidoTexto{app.help()};
    } catch (const CLI::ParseError &error) {
        throw Fallo(porque(error) + "; «orcalin --help» explica el uso");
    }
    extraer.todo = extrae->count("--file") == 0;
    if (comprime->parsed())
        return comprimir;
    if (lista->parsed())
        return listar;
    return extraer;
}

} // namespace orcalin
