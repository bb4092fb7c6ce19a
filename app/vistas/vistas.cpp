#include "vistas.h"

#include "escritorio/frente.h"
#include "imagenes.h"
#include "inicio/orcalinapp.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>

void qml_register_types_Orcalin(); // made by the build from registros.h

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
    m_motorQml->load(QUrl(QStringLiteral("qrc:/Orcalin/Ventana.qml")));
}

vistas::Ventana::~Ventana() = default;

bool vistas::Ventana::hecha() const {
    return !m_motorQml->rootObjects().isEmpty();
}

void vistas::Ventana::alFrente(const Ficha &ficha) {
    if (auto *ventana = qobject_cast<QWindow *>(m_motorQml->rootObjects().value(0)))
        traeAlFrente(*ventana, ficha);
}
