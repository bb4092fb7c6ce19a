#include "ordenes/pedido.h"

#include "cifrado/cabecera_age.h"
#include "comun/fallo.h"
#include "ordenes/ayuda.h"

#include <algorithm>
#include <zstd.h>

namespace orcalin {
namespace {

void enEspanol(CLI::App &app, const std::string &ejemplos) {
    app.formatter(std::make_shared<Ayuda>());
    app.set_help_flag("-h,--help", "Muestra esta ayuda");
    app.footer("Ejemplos:\n" + ejemplos);
}

CLI::App *orden(CLI::App &app, const char *nombre, const char *descripcion,
                const std::string &ejemplos) {
    CLI::App *nueva = app.add_subcommand(nombre, descripcion);
    enEspanol(*nueva, ejemplos);
    return nueva;
}

void conArchivo(CLI::App &app, std::string &ruta) {
    app.add_option("ARCHIVO", ruta, "Archivo que se lee")->required();
}

CLI::Option *conContrasena(CLI::App &app, std::string &ruta) {
    return app.add_option("--password-file", ruta, "La contraseña es lo que contiene FICHERO")
        ->type_name("FICHERO");
}

void conContrasena(CLI::App &app, FicheroContrasena &fichero) {
    conContrasena(app, fichero.ruta);
    app.add_flag_callback(
        "--no-remember", [&fichero] { fichero.seRecuerda = false; },
        "No recuerda la clave durante un minuto");
}

CLI::App *ordenComprimir(CLI::App &app, PedidoComprimir &p) {
    CLI::App *nueva = orden(app, "compress", "Guarda ficheros y carpetas en un archivo.",
                            "  orcalin compress -o fotos.okz Fotos\n"
                            "  orcalin compress -o papeles.okz --max Documentos notas.txt\n"
                            "  orcalin compress -o diario.okz --encrypt --password-file clave "
                            "diario\n");
    nueva->add_option("ORIGEN", p.origenes, "Ficheros y carpetas que se guardan")->required();
    nueva->add_option("-o", p.destino, "Archivo que se escribe")->required()->type_name("ARCHIVO");
    auto *nivel = nueva->add_option("--level", p.nivel, "Nivel de compresión, de 1 a 22 (19)");
    nivel->type_name("N")->check(CLI::Range(1, ZSTD_maxCLevel()).description(""));
    nueva->add_flag("--max", p.maximo, "Lo más pequeño posible, sin prisa")->excludes(nivel);
    auto *cifra = nueva->add_flag("--encrypt", p.cifra, "Cifra con contraseña, nombres incluidos");
    cifra->disable_flag_override();
    // Whoever names a password believes the archive to be encrypted.
    conContrasena(*nueva, p.ficheroContrasena)->needs(cifra);
    nueva->add_flag("--progress", p.progreso, "Cuenta cómo va también si no hay terminal");
    nueva->add_flag_callback(
        "--no-verify", [&p] { p.verifica = false; }, "No vuelve a leer del disco lo guardado");
    nueva->add_option("--work-factor", p.factor)->group("")->check(CLI::Range(1, factorMaximo));
    return nueva;
}

CLI::App *ordenListar(CLI::App &app, PedidoListar &p) {
    CLI::App *nueva =
        orden(app, "list", "Muestra lo que hay en un archivo.", "  orcalin list fotos.okz\n");
    conArchivo(*nueva, p.archivo);
    conContrasena(*nueva, p.ficheroContrasena);
    return nueva;
}

CLI::App *ordenExtraer(CLI::App &app, PedidoExtraer &p) {
    CLI::App *nueva = orden(app, "extract", "Saca lo que hay en un archivo.",
                            "  orcalin extract fotos.okz -o .\n"
                            "  orcalin extract fotos.okz -o /tmp --file Fotos/playa.jpg\n");
    conArchivo(*nueva, p.archivo);
    nueva->add_option("-o", p.destino, "Carpeta en la que se deja; se crea si no la hay")
        ->required()
        ->type_name("CARPETA");
    nueva->add_option("--file", p.entrada, "Solo RUTA y lo que cuelgue de ella, como en list")
        ->type_name("RUTA");
    nueva->add_flag("--replace", p.reemplaza, "Lo que sale reemplaza a lo que haya");
    conContrasena(*nueva, p.ficheroContrasena);
    return nueva;
}

CLI::App *ordenComprobar(CLI::App &app, PedidoComprobar &p) {
    CLI::App *nueva = orden(app, "check", "Lee un archivo entero y dice si está sano.",
                            "  orcalin check fotos.okz && echo sano\n");
    conArchivo(*nueva, p.archivo);
    conContrasena(*nueva, p.ficheroContrasena);
    return nueva;
}

/// The arguments, last first as the library wants them. It would take a path
/// between brackets for a list, and «++» for the end of a command; «./» before it
/// changes nothing for any of ours.
std::vector<std::string> argumentos(int argc, const char *const *argv) {
    std::vector<std::string> todos(argv + std::min(1, argc), argv + argc);
    for (auto &argumento : todos)
        if (argumento.starts_with('[') || argumento == "++")
            argumento.insert(0, "./");
    std::reverse(todos.begin(), todos.end());
    return todos;
}

} // namespace

Pedido lee(int argc, const char *const *argv) {
    CLI::App app("Guarda lo que se le da en un solo archivo, y lo devuelve.", "orcalin");
    enEspanol(app, "  orcalin compress -o fotos.okz Fotos\n"
                   "  orcalin extract fotos.okz -o .\n"
                   "\n«orcalin ORDEN --help» explica cada orden; «man orcalin», todo.\n");
    app.set_version_flag("--version", "orcalin " ORCALIN_VERSION, "Muestra la versión");
    app.require_subcommand(1);
    PedidoComprimir comprimir;
    PedidoListar listar;
    PedidoExtraer extraer;
    PedidoComprobar comprobar;
    const CLI::App *comprime = ordenComprimir(app, comprimir);
    const CLI::App *lista = ordenListar(app, listar);
    const CLI::App *extrae = ordenExtraer(app, extraer);
    ordenComprobar(app, comprobar);
    try {
        app.parse(argumentos(argc, argv));
    } catch (const CLI::CallForVersion &version) {
        return PedidoTexto{version.what() + std::string("\n")};
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
    if (extrae->parsed())
        return extraer;
    return comprobar;
}

} // namespace orcalin
