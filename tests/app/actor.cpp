// A stand-in for the engine that plays the script named by ACTOR_GUION, one
// action a line: "accion dato", or "en K accion dato" for the K-th run alone
// after "cuenta FICHERO". What a text may hold: \n \r \t \\ \xNN. The files that
// a script names are seen from the script's folder.
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

std::vector<std::string> argumentos;
int vez = 0;

void juegaLinea(const std::string &linea);

std::string descifra(const std::string &texto) {
    std::string bytes;
    for (size_t i = 0; i < texto.size(); ++i) {
        if (texto[i] != '\\') {
            bytes += texto[i];
            continue;
        }
        const char clase = texto[++i];
        const size_t conocida = std::string_view("nrt").find(clase);
        if (clase == 'x') {
            bytes += static_cast<char>(std::stoi(texto.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            bytes += conocida == std::string_view::npos ? clase : "\n\r\t"[conocida];
        }
    }
    return bytes;
}

void di(int a, const std::string &bytes) {
    for (size_t n = 0; n < bytes.size();) {
        const ssize_t escrito = ::write(a, bytes.data() + n, bytes.size() - n);
        if (escrito <= 0)
            return;
        n += static_cast<size_t>(escrito);
    }
}

void espera(int ms) {
    ::usleep(static_cast<useconds_t>(ms) * 1000);
}

std::string tras(const std::string &opcion) {
    for (size_t i = 0; i + 1 < argumentos.size(); ++i) {
        if (argumentos[i] == opcion)
            return argumentos[i + 1];
    }
    return {};
}

// One argument after another, each ended by a zero byte.
void apuntaArgumentos(const std::string &fichero) {
    std::ofstream salida(fichero, std::ios::binary | std::ios::app);
    for (const std::string &argumento : argumentos)
        salida << argumento << '\0';
}

// The password file as the engine finds it: its mode, a space, its bytes.
void apuntaClave(const std::string &fichero) {
    const std::string ruta = tras("--password-file");
    struct stat dato {};
    if (::stat(ruta.c_str(), &dato) != 0)
        return;
    std::ifstream clave(ruta, std::ios::binary);
    std::ofstream salida(fichero, std::ios::binary);
    salida << std::oct << (dato.st_mode & 07777) << ' ' << clave.rdbuf();
}

// How many descriptors the engine was given.
void apuntaDescriptores(const std::string &fichero) {
    int abiertos = 0;
    for (int i = 0; i < 1024; ++i)
        abiertos += ::fcntl(i, F_GETFD) >= 0 ? 1 : 0;
    std::ofstream(fichero) << abiertos;
}

// Until there is such a file.
void aguarda(const std::string &fichero) {
    while (!std::filesystem::exists(fichero))
        espera(20);
}

void inunda(int a, long bytes) {
    const std::string bloque(65536, 'x');
    for (; bytes > 0; bytes -= static_cast<long>(bloque.size()))
        di(a, bloque.substr(0, static_cast<size_t>(std::min<long>(bytes, 65536))));
}

// Keeps both streams full for as long as told.
void parlotea(int ms) {
    ::alarm(static_cast<unsigned>(ms) / 1000 + 1);
    const std::string bloque(4096, 'n');
    for (;;)
        di(STDOUT_FILENO, bloque), di(STDERR_FILENO, bloque);
}

void dejaNieto(void (*hacer)(int), const std::string &ms) {
    if (::fork() == 0)
        hacer(std::stoi(ms)), ::_exit(0);
}

// The entry that was asked for, below the folder that was told.
std::filesystem::path copiaDe(const std::string &entrada) {
    const std::filesystem::path copia = tras("-o") + '/' + entrada;
    std::filesystem::create_directories(copia.parent_path());
    return copia;
}

// The number of this run among those that count in the same file.
int cuentaVez(const std::string &fichero) {
    std::ofstream(fichero, std::ios::app) << '.';
    return static_cast<int>(std::filesystem::file_size(fichero));
}

void enSuVez(const std::string &dato) {
    if (std::stoi(dato) == vez)
        juegaLinea(dato.substr(dato.find(' ') + 1));
}

// Ends the run unless the password file holds this.
void exige(const std::string &contrasena) {
    std::stringstream leida;
    leida << std::ifstream(tras("--password-file"), std::ios::binary).rdbuf();
    if (leida.str() == contrasena)
        return;
    di(STDERR_FILENO, "Error: falta la contraseña, o no es esa\n");
    ::_exit(1);
}

using Accion = std::function<void(const std::string &dato)>;
const std::map<std::string, Accion> kAcciones{
    {"error", [](auto &dato) { di(STDERR_FILENO, descifra(dato)); }},
    {"salida", [](auto &dato) { di(STDOUT_FILENO, descifra(dato)); }},
    {"espera", [](auto &dato) { espera(std::stoi(dato)); }},
    {"aguarda", aguarda},
    {"inunda", [](auto &dato) { inunda(STDERR_FILENO, std::stol(dato)); }},
    {"inunda-salida", [](auto &dato) { inunda(STDOUT_FILENO, std::stol(dato)); }},
    {"cierra", [](auto &) { ::close(STDOUT_FILENO), ::close(STDERR_FILENO); }},
    {"ignora", [](auto &) { ::signal(SIGTERM, SIG_IGN); }},
    {"deja-nieto", [](auto &dato) { dejaNieto(espera, dato); }},
    {"deja-nieto-hablador", [](auto &dato) { dejaNieto(parlotea, dato); }},
    {"escribe-destino",
     [](auto &dato) { std::ofstream(tras("-o")) << std::string(std::stoul(dato), 'o'); }},
    {"crea-entrada", [](auto &dato) { std::ofstream(copiaDe(tras("--file"))) << dato; }},
    {"crea", [](auto &dato) { std::ofstream(copiaDe(descifra(dato))) << "x"; }},
    {"enlaza-entrada",
     [](auto &dato) { std::filesystem::create_symlink(dato, copiaDe(tras("--file"))); }},
    {"cuenta", [](auto &dato) { vez = cuentaVez(dato); }},
    {"en", enSuVez},
    {"exige", exige},
    {"argumentos", apuntaArgumentos},
    {"clave", apuntaClave},
    {"descriptores", apuntaDescriptores},
    {"senal", [](auto &dato) { ::raise(std::stoi(dato)); }},
    {"sale", [](auto &dato) { ::_exit(std::stoi(dato)); }},
};

void juegaLinea(const std::string &linea) {
    const size_t corte = linea.find(' ');
    const auto accion = kAcciones.find(linea.substr(0, corte));
    if (accion != kAcciones.end())
        accion->second(corte == std::string::npos ? "" : linea.substr(corte + 1));
}

} // namespace

int main(int argc, char **argv) {
    argumentos.assign(argv + 1, argv + argc);
    const char *nombre = std::getenv("ACTOR_GUION");
    const std::filesystem::path guion = nombre != nullptr ? nombre : "";
    std::stringstream acciones;
    acciones << std::ifstream(guion).rdbuf();
    std::error_code ignorado;
    std::filesystem::current_path(guion.parent_path(), ignorado);
    for (std::string linea; std::getline(acciones, linea);)
        juegaLinea(linea);
    return 0;
}
