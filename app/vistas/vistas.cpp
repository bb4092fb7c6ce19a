#include "vistas.h"

#include "escritorio/frente.h"
#include "imagenes.h"
#include "inicio/orcalinapp.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QImageReader>
#include <QQmlApplicationEngine>
#include <QQmlComponent>
#include <QQuickWindow>

void qml_register_types_Orcalin(); // made by the build from registros.h

namespace {

// The fonts of the system and the readers of images, which take long to find.
void preparaPrimerCuadro() {
    (void)QFontMetrics(QGuiApplication::font()).height();
    (void)QImageReader::supportedImageFormats();
}

} // namespace

void vistas::prepara() {
    // A window of this kind is up sooner and takes a third of the memory
    // without a graphics driver.
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") &&
        !qEnvironmentVariableIsSet("QSG_RHI_BACKEND"))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

vistas::Ventana::Ventana(OrcalinApp &app)
    : m_motorQml(std::make_unique<QQmlApplicationEngine>()) {
    // Nothing else refers to it, and the linker would leave it out.
    qml_register_types_Orcalin();
    m_motorQml->addImageProvider(QStringLiteral("sistema"), new Imagenes); // the engine owns it
    m_motorQml->setInitialProperties({{QStringLiteral("app"), QVariant::fromValue(&app)}});
    const QUrl ventana(QStringLiteral("qrc:/Orcalin/Ventana.qml"));
    // A thread of the engine reads the files. What the first frame needs besides
    // gets ready here in the meantime; load() then waits for the rest.
    const QQmlComponent adelanto(m_motorQml.get(), ventana, QQmlComponent::Asynchronous);
    preparaPrimerCuadro();
    m_motorQml->load(ventana);
}

vistas::Ventana::~Ventana() = default;

bool vistas::Ventana::hecha() const {
    return !m_motorQml->rootObjects().isEmpty();
}

void vistas::Ventana::alFrente(const Ficha &ficha) {
    if (auto *ventana = qobject_cast<QWindow *>(m_motorQml->rootObjects().value(0)))
        traeAlFrente(*ventana, ficha);
}
