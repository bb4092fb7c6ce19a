#include "banco.h"

#include "lugares/ruta.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QString enPalabras(const Motor::Estado &estado) {
    if (const auto *ahora = std::get_if<Motor::Trabajando>(&estado))
        return QStringLiteral("%1 % ").arg(std::lround(ahora->pct * 100)) + ahora->detalle +
               (ahora->restante ? " ~" : "");
    if (const auto *hecho = std::get_if<Motor::Hecho>(&estado))
        return QStringLiteral("hecho %1 %2 %3")
            .arg(hecho->entrada)
            .arg(hecho->salida)
            .arg(hecho->ruta.toString(QUrl::FullyEncoded));
    const auto *error = std::get_if<Motor::Error>(&estado);
    return error != nullptr ? QStringLiteral("error ") + error->texto : QStringLiteral("reposo");
}

} // namespace

QByteArray sitioDelMotor() {
    return QFile::encodeName(QCoreApplication::applicationDirPath()) +
           "/../libexec/orcalin/orcalin";
}

QUrl url(const char *ruta) {
    return ruta::url(QByteArray(ruta));
}

Banco::Banco()
    : m_tmpdir(qgetenv("TMPDIR"))
    , m_home(qgetenv("HOME")) {
    qputenv("TMPDIR", QFile::encodeName(m_carpeta.path()));
    qputenv("HOME", QFile::encodeName(m_carpeta.path()));
    QDir().mkpath(QFileInfo(QFile::decodeName(sitioDelMotor())).path());
    quitaMotor();
}

Banco::Banco(const Guion &guion)
    : Banco() {
    ponMotor(guion);
}

Banco::~Banco() {
    quitaMotor();
    // Qt cannot remove a name that is not UTF-8.
    std::error_code ignorado;
    std::filesystem::remove_all(ruta("").toStdString(), ignorado);
    m_tmpdir.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", m_tmpdir);
    qputenv("HOME", m_home);
}

QByteArray Banco::ruta(const QByteArray &nombre) const {
    return QFile::encodeName(m_carpeta.path()) + '/' + nombre;
}

QUrl Banco::url(const QByteArray &nombre) const {
    return ruta::url(ruta(nombre));
}

bool Banco::hay(const QByteArray &nombre) const {
    return ::access(ruta(nombre).constData(), F_OK) == 0;
}

QUrl Banco::fichero(const QByteArray &nombre, const QByteArray &contenido) const {
    const std::filesystem::path completa = ruta(nombre).toStdString();
    std::filesystem::create_directories(completa.parent_path());
    std::ofstream(completa, std::ios::binary) << contenido.toStdString();
    return url(nombre);
}

QByteArray Banco::lee(const QByteArray &nombre) const {
    QFile fichero(QFile::decodeName(ruta(nombre)));
    return fichero.open(QIODevice::ReadOnly) ? fichero.readAll() : QByteArray();
}

QList<QByteArray> Banco::argumentos() const {
    QList<QByteArray> todos = lee("args").split('\0');
    todos.removeLast();
    return todos;
}

QByteArray Banco::ordenes() const {
    static const QRegularExpression uuid(
        QStringLiteral("[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}"));
    const QByteArray todo = argumentos().join('|').replace(ruta("").chopped(1), "~");
    return QString::fromLatin1(todo).replace(uuid, "*").toLatin1();
}

void Banco::enlace(const QByteArray &a, const QByteArray &nombre) const {
    QVERIFY(::symlink(a.constData(), ruta(nombre).constData()) == 0);
}

void Banco::ponMotor(const Guion &guion) const {
    quitaMotor();
    QVERIFY(::symlink(ACTOR, sitioDelMotor().constData()) == 0);
    fichero("guion", guion.join('\n'));
    qputenv("ACTOR_GUION", ruta("guion"));
}

void Banco::ponFicheroComoMotor(const QByteArray &contenido, unsigned modo) {
    quitaMotor();
    QFile motor(QFile::decodeName(sitioDelMotor()));
    QVERIFY(motor.open(QIODevice::WriteOnly));
    motor.write(contenido);
    motor.close();
    ::chmod(sitioDelMotor().constData(), modo);
}

void Banco::quitaMotor() {
    ::unlink(sitioDelMotor().constData());
}

QStringList Banco::claves() const {
    return QDir(m_carpeta.path())
        .entryList({QStringLiteral("okz-*"), QStringLiteral(".okz-*")},
                   QDir::AllEntries | QDir::Hidden);
}

Testigo::Testigo(Motor &motor) {
    connect(&motor, &Motor::estadoCambia, this, [this, &motor] { vistos.append(motor.estado()); });
}

QStringList Testigo::dichos() const {
    QStringList todos;
    std::transform(vistos.begin(), vistos.end(), std::back_inserter(todos), enPalabras);
    return todos;
}

bool Testigo::esperaFinal(int finales) {
    const auto acabados = [this] {
        return std::count_if(vistos.begin(), vistos.end(), [](const Motor::Estado &estado) {
            return std::holds_alternative<Motor::Hecho>(estado) ||
                   std::holds_alternative<Motor::Error>(estado);
        });
    };
    return QTest::qWaitFor([&] { return acabados() >= finales; }, 20000);
}
