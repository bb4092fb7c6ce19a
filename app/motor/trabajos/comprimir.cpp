#include "encargos.h"
#include "hijos/proceso.h"
#include "lugares/ruta.h"
#include "lugares/tamano.h"
#include "sistema/descriptor.h"
#include "textos/lineas.h"
#include "textos/progreso.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <vector>

namespace {

// Why the engine could not be started, in the user's language: the system's own
// texts depend on translations that are rarely installed.
QString motivo(int fallo) {
    switch (fallo) {
    case ENOENT:
        return QStringLiteral("no existe, o le falta algo para funcionar.");
    case EACCES:
    case EPERM:
        return QStringLiteral("no hay permiso para ejecutarlo.");
    case ENOEXEC:
    case ELIBBAD:
        return QStringLiteral("no es un programa para este ordenador.");
    case E2BIG:
        return QStringLiteral("son demasiados elementos de una vez; prueba con su carpeta.");
    case ENOMEM:
        return QStringLiteral("no queda memoria.");
    case EAGAIN:
        return QStringLiteral("hay demasiados programas en marcha.");
    case EMFILE:
    case ENFILE:
        return QStringLiteral("hay demasiados archivos abiertos.");
    case ETXTBSY:
        return QStringLiteral("alguien lo está modificando.");
    case EIO:
        return QStringLiteral("el disco ha fallado.");
    default:
        return QStringLiteral("fallo %1 del sistema.").arg(fallo);
    }
}

QList<QByteArray> argumentos(const QList<QUrl> &origenes, const QUrl &destino, bool maximo) {
    QList<QByteArray> todos{"compress"};
    for (const QUrl &origen : origenes)
        todos.append(ruta::nativa(origen));
    todos << "-o" << ruta::nativa(destino);
    if (maximo)
        todos << "--max";
    else
        todos << "--level"
              << "19";
    todos << "--progress";
    return todos;
}

// The archive counts with what can be read back from it, not with what the
// file system says of it; 0 when it cannot be read to its end. Block by block,
// since an archive may be larger than the memory.
qint64 bytesLegibles(const QUrl &destino) {
    const Descriptor fichero(
        ::open(ruta::nativa(destino).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat dato {};
    if (!fichero || ::fstat(fichero.numero(), &dato) != 0 || !S_ISREG(dato.st_mode))
        return 0;
    std::vector<char> bloque(1 << 20);
    qint64 suma = 0;
    ssize_t leido = 0;
    // When the application leaves, nobody will see the number.
    while (!Proceso::seVanTodos() &&
           (leido = ::read(fichero.numero(), bloque.data(), bloque.size())) != 0) {
        if (leido < 0 && errno != EINTR)
            return 0;
        suma += std::max<ssize_t>(leido, 0);
    }
    return suma;
}

QString mensajeDeFallo(const QByteArray &error) {
    QString elegida = QStringLiteral("No se pudo guardar.");
    const QString texto = lineas::texto(error);
    for (const QStringView linea : lineas::separa(texto)) {
        if (linea.contains(u"Error") || linea.contains(u"error"))
            elegida = linea.toString();
    }
    return lineas::sinPrefijo(elegida);
}

class Compresion : public Encargo {
public:
    Compresion(QList<QUrl> origenes, const QUrl &destino, bool maximo,
               std::optional<QString> contrasena)
        : Encargo({.obra = Obra::Guardar,
                   .cuentaSuAvance = true,
                   .cifra = true,
                   .laCancelaElMotor = true},
                  destino, std::move(contrasena))
        , m_origenes(std::move(origenes))
        , m_maximo(maximo) {}

    [[nodiscard]] QString sinMotor() const override {
        return QStringLiteral("No encuentro el motor «orcalin». Debería estar dentro de la app.");
    }
    [[nodiscard]] QString noArranca(int fallo) const override {
        return QStringLiteral("No pude arrancar el motor: ") + motivo(fallo);
    }
    std::optional<QString> antes() override {
        m_entrada = pesoDe(m_origenes);
        return std::nullopt;
    }
    [[nodiscard]] estados::Trabajando alEmpezar() const override {
        return {0, QStringLiteral("preparando…"), std::nullopt};
    }
    std::variant<Argumentos, QString> paso(qsizetype) override {
        return argumentos(m_origenes, archivo(), m_maximo);
    }
    [[nodiscard]] QList<estados::Trabajando> lee(const QByteArray &trozo,
                                                 double segundos) const override {
        return progreso::leeTrozo(trozo, segundos);
    }
    QString queja(qsizetype, const QByteArray &error) override { return mensajeDeFallo(error); }
    void remata(bool bien) override { m_salida = bien ? bytesLegibles(archivo()) : 0; }
    estados::Estado acaba(const std::optional<QString> &fallo, double segundos) override {
        if (fallo)
            return estados::Error{*fallo};
        return estados::Hecho{m_entrada, m_salida, segundos, archivo()};
    }

private:
    const QList<QUrl> m_origenes;
    const bool m_maximo;
    qint64 m_entrada = 0;
    qint64 m_salida = 0;
};

} // namespace

encargos::Nuevo encargos::comprimir(QList<QUrl> origenes, const QUrl &destino, bool maximo,
                                    Contrasena contrasena) {
    return std::make_unique<Compresion>(std::move(origenes), destino, maximo,
                                        std::move(contrasena));
}
