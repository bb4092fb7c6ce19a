#include "escritoriolibre.h"

#include "abridor.h"
#include "arrastre.h"
#include "dialogoorigenes.h"
#include "llamada.h"
#include "lugares/espacio.h"
#include "lugares/ruta.h"

#include <QApplication>
#include <QFileSystemModel>
#include <QWindow>

namespace {

constexpr int kEsperaAlGestor = 2000; // milliseconds
constexpr int kAncho = 760;           // of a file panel: names are long
constexpr int kAlto = 480;

} // namespace

EscritorioLibre::EscritorioLibre()
    : m_carpeta(QDir::homePath()) {}

// Over the main window, which is no widget and so cannot be the parent.
bool EscritorioLibre::muestra(QFileDialog &dialogo) {
    if (!m_iconos)
        m_iconos.emplace();
    // By the panel's own way to set it the places at the side forget which one is shown.
    if (auto *ficheros = dialogo.findChild<QFileSystemModel *>())
        ficheros->setIconProvider(&*m_iconos);
    QWindow *principal = QGuiApplication::focusWindow();
    dialogo.resize(kAncho, kAlto);
    dialogo.winId(); // makes the window
    dialogo.windowHandle()->setTransientParent(principal);
    return dialogo.exec() == QDialog::Accepted;
}

QList<QUrl> EscritorioLibre::eligeOrigenes() {
    DialogoOrigenes dialogo;
    dialogo.setDirectory(m_carpeta);
    if (!muestra(dialogo))
        return {};
    m_carpeta = dialogo.directory().path();
    return dialogo.elegidos();
}

std::optional<QUrl> EscritorioLibre::eligeDestino(const QString &nombre) {
    QFileDialog dialogo(nullptr, QStringLiteral("Guardar"), m_carpeta);
    dialogo.setAcceptMode(QFileDialog::AcceptSave);
    dialogo.setFileMode(QFileDialog::AnyFile);
    dialogo.setLabelText(QFileDialog::Accept, QStringLiteral("Guardar"));
    dialogo.selectFile(nombre);
    if (!muestra(dialogo) || dialogo.selectedUrls().isEmpty())
        return std::nullopt;
    m_carpeta = dialogo.directory().path();
    return dialogo.selectedUrls().constFirst();
}

std::optional<QUrl> EscritorioLibre::eligeArchivo() {
    QFileDialog dialogo(nullptr, QStringLiteral("Abrir archivo"), m_carpeta,
                        QStringLiteral("Archivos de Orcalin (*.okz *.OKZ *.Okz)"));
    dialogo.setFileMode(QFileDialog::ExistingFile);
    dialogo.setLabelText(QFileDialog::Accept, QStringLiteral("Abrir"));
    if (!muestra(dialogo) || dialogo.selectedUrls().isEmpty())
        return std::nullopt;
    m_carpeta = dialogo.directory().path();
    return dialogo.selectedUrls().constFirst();
}

std::optional<QUrl> EscritorioLibre::eligeCarpeta(const QString &mensaje) {
    QFileDialog dialogo(nullptr, mensaje, m_carpeta);
    dialogo.setFileMode(QFileDialog::Directory);
    dialogo.setOption(QFileDialog::ShowDirsOnly);
    dialogo.setLabelText(QFileDialog::Accept, QStringLiteral("Recuperar aquí"));
    if (!muestra(dialogo) || dialogo.selectedUrls().isEmpty())
        return std::nullopt;
    m_carpeta = dialogo.selectedUrls().constFirst().toLocalFile();
    return dialogo.selectedUrls().constFirst();
}

// With what a panel asks on top of it: whether to replace a file.
void EscritorioLibre::cierraPaneles() {
    for (QWidget *ventana : QApplication::topLevelWidgets())
        if (auto *panel = qobject_cast<QDialog *>(ventana); panel != nullptr && panel->isVisible())
            panel->reject();
}

QString EscritorioLibre::textoDeBytes(qint64 bytes) const {
    return ::textoDeBytes(bytes);
}

void EscritorioLibre::abre(const QUrl &url, std::function<void()> siNo) {
    abreFuera(url, std::move(siNo));
}

void EscritorioLibre::revela(const QUrl &url, std::function<void()> siNo) {
    auto llamada = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.FileManager1"),
                                                  QStringLiteral("/org/freedesktop/FileManager1"),
                                                  QStringLiteral("org.freedesktop.FileManager1"),
                                                  QStringLiteral("ShowItems"));
    llamada << QStringList{url.toString(QUrl::FullyEncoded)} << QString();
    llamaSinEsperar(
        qGuiApp, llamada,
        [url, siNo = std::move(siNo)](const QDBusMessage &respuesta) {
            if (respuesta.type() != QDBusMessage::ReplyMessage)
                abreFuera(url.adjusted(QUrl::RemoveFilename), siNo);
        },
        kEsperaAlGestor);
}

void EscritorioLibre::avanza(std::optional<double> parte) {
    m_lanzador.avanza(parte);
}

void EscritorioLibre::avisa(Aviso cuando, const QString &titulo, const QString &texto) {
    if (cuando == Aviso::Siempre || QGuiApplication::applicationState() != Qt::ApplicationActive)
        m_notificaciones.muestra(titulo, texto);
}

void EscritorioLibre::alVolver(std::function<void(const Ficha &)> hacer) {
    m_notificaciones.alVolver = std::move(hacer);
}

bool EscritorioLibre::arrastra(Saque &saque, const QString &rotulo) {
    return arrastraFuera(saque, rotulo);
}
