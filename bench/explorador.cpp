// How fast the browser is with many entries, in its real window. Run it by
// bench/explorador. Called as "list" it is the engine that prints them.
#include "escritorio/escritoriolibre.h"
#include "inicio/abierto.h"
#include "inicio/orcalinapp.h"
#include "motor/fondo.h"
#include "vistas/vistas.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QQuickWindow>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <malloc.h>
#include <unistd.h>

namespace {

constexpr int kVueltas = 5;

double ahora() {
    timespec t{};
    ::clock_gettime(CLOCK_MONOTONIC, &t);
    return static_cast<double>(t.tv_sec) * 1e3 + static_cast<double>(t.tv_nsec) / 1e6;
}

QByteArray listado(int entradas) {
    static const char *const clases[] = {"fotos", "documentos", "música", "código fuente"};
    QByteArray lineas;
    for (int i = 0; i < entradas; ++i) {
        lineas += QByteArray("-0644 ") + QByteArray::number(i * 37) + " copia/" + clases[i % 4] +
                  "/" + QByteArray::number(i / 1000) + "/fichero número " + QByteArray::number(i) +
                  ".jpg\n";
    }
    return lineas;
}

// Plays the engine: prints the file and notes when the last byte was out.
int emite() {
    QFile lista(qEnvironmentVariable("BENCH_LISTA"));
    QFile salida;
    if (!lista.open(QIODevice::ReadOnly) || !salida.open(stdout, QIODevice::WriteOnly))
        return 1;
    salida.write(lista.readAll());
    salida.flush();
    QFile fin(qEnvironmentVariable("BENCH_LISTA") + QStringLiteral(".fin"));
    return fin.open(QIODevice::WriteOnly) && fin.write(QByteArray::number(ahora(), 'f', 3)) > 0 ? 0
                                                                                                : 1;
}

// The longest time between two turns of the event loop.
class Latido : public QObject {
public:
    Latido() {
        m_reloj.setInterval(0);
        connect(&m_reloj, &QTimer::timeout, this, [this] {
            const double t = ahora();
            m_peor = std::max(m_peor, t - m_ultimo);
            m_ultimo = t;
        });
        m_reloj.start();
    }
    double peor() const { return m_peor; }

private:
    QTimer m_reloj;
    double m_ultimo = ahora();
    double m_peor = 0;
};

qint64 memoria() {
    ::malloc_trim(0);
    QFile estado(QStringLiteral("/proc/self/statm"));
    return estado.open(QIODevice::ReadOnly)
               ? estado.readAll().split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE)
               : 0;
}

double mediana(QList<double> tiempos) {
    std::sort(tiempos.begin(), tiempos.end());
    return tiempos[tiempos.size() / 2];
}

bool fila(const char *que, double medido, double limite, const char *unidad) {
    const bool cumple = medido <= limite;
    std::printf("  %-44s %9.1f %-6s bound %7.0f  %s\n", que, medido, unidad, limite,
                cumple ? "met" : "MISSED");
    return cumple;
}

class Banco {
public:
    Banco(OrcalinApp &app, QQuickWindow &ventana)
        : m_app(app)
        , m_ventana(ventana) {}

    // Lists the archive afresh; milliseconds from the engine's last byte to the
    // frame with the list.
    double carga() {
        Abierto::compartido().ponArchivo(std::nullopt);
        esperaA([this] { return m_app.pantalla() != nullptr; });
        colaDeFondo().waitForDone();
        Abierto::compartido().ponArchivo(QUrl(QStringLiteral("file:///banco.okz")));
        esperaA([this] {
            return m_app.explorador() &&
                   m_app.explorador()->panel() == Explorador::Panel::Contenido;
        });
        cuadro();
        QFile fin(qEnvironmentVariable("BENCH_LISTA") + QStringLiteral(".fin"));
        return fin.open(QIODevice::ReadOnly) ? ahora() - fin.readAll().toDouble() : -1;
    }

    double tecla(const QString &busca) {
        return cuesta([&] { m_app.explorador()->ponBusca(busca); });
    }
    double eligeTodo() {
        return cuesta([this] { m_app.explorador()->filas()->eligeTodo(); });
    }

private:
    template<typename Accion>
    double cuesta(Accion accion) {
        const double inicio = ahora();
        accion();
        cuadro();
        return ahora() - inicio;
    }
    template<typename Condicion>
    static void esperaA(Condicion condicion) {
        while (!condicion())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    void cuadro() {
        QEventLoop bucle;
        const auto enlace =
            QObject::connect(&m_ventana, &QQuickWindow::frameSwapped, &bucle, &QEventLoop::quit);
        m_ventana.update();
        bucle.exec();
        QObject::disconnect(enlace);
    }

    OrcalinApp &m_app;
    QQuickWindow &m_ventana;
};

struct Limites {
    double carga;
    double tecla;
};

bool mide(Banco &banco, int entradas, Limites limites) {
    QFile lista(qEnvironmentVariable("BENCH_LISTA"));
    if (!lista.open(QIODevice::WriteOnly))
        return false;
    lista.write(listado(entradas));
    lista.close();

    const qint64 antes = memoria();
    QList<double> cargas;
    QList<double> primeras;
    QList<double> siguientes;
    QList<double> selecciones;
    const Latido latido;
    for (int i = 0; i < kVueltas; ++i) {
        cargas.append(banco.carga());
        primeras.append(banco.tecla(QStringLiteral("n")));
        siguientes.append(banco.tecla(QStringLiteral("nú")));
        siguientes.append(banco.tecla(QStringLiteral("número 77")));
        primeras.append(banco.tecla(QStringLiteral("é")));
        banco.tecla(QString());
        selecciones.append(banco.eligeTodo());
    }
    const double octetos = static_cast<double>(memoria() - antes) / entradas;
    std::printf("%d entries, medians of %d\n", entradas, kVueltas);
    bool bien = fila("last byte to the list on screen", mediana(cargas), limites.carga, "ms");
    bien &= fila("first letter of a search", mediana(primeras), limites.tecla, "ms");
    bien &= fila("one letter more", mediana(siguientes), limites.tecla, "ms");
    bien &= fila("selecting all", mediana(selecciones), limites.tecla, "ms");
    bien &= fila("memory an entry", octetos, 600, "bytes");
    return fila("main thread busy at a stretch, at worst", latido.peor(), 50, "ms") && bien;
}

} // namespace

int main(int argc, char **argv) {
    if (argc > 1 && qstrcmp(argv[1], "list") == 0)
        return emite();
    vistas::prepara();
    const QApplication aplicacion(argc, argv);
    EscritorioLibre escritorio;
    OrcalinApp app(std::make_unique<Delegado>(), escritorio);
    const vistas::Ventana ventana(app);
    Banco banco(app,
                *qobject_cast<QQuickWindow *>(QGuiApplication::topLevelWindows().constFirst()));
    bool bien = mide(banco, 100'000, {300, 16});
    bien &= mide(banco, 1'000'000, {3000, 100});
    Abierto::compartido().ponArchivo(std::nullopt);
    QCoreApplication::processEvents();
    colaDeFondo().waitForDone();
    return bien ? 0 : 1;
}
