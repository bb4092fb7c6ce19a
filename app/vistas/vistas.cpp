#include "vistas.h"

#include "escritorio/frente.h"
#include "imagenes.h"
#include "inicio/orcalinapp.h"

#include <QQmlComponent>
#include <QQmlEngine>
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
    // Not the engine made for applications: that one puts Qt's own texts in the
    // user's language over ours.
    : m_motorQml(std::make_unique<QQmlEngine>()) {
    // Nothing else refers to it, and the linker would leave it out.
    qml_register_types_Orcalin();
    m_motorQml->addImageProvider(QStringLiteral("sistema"), new Imagenes); // the engine owns it
    QQmlComponent ventana(m_motorQml.get(), QUrl(QStringLiteral("qrc:/Orcalin/Ventana.qml")));
    m_raiz.reset(ventana.createWithInitialProperties(
        {{QStringLiteral("app"), QVariant::fromValue(&app)}}));
    if (!m_raiz)
        qCritical("%s", qUtf8Printable(ventana.errorString()));
}

vistas::Ventana::~Ventana() = default;

bool vistas::Ventana::hecha() const {
    return m_raiz != nullptr;
}

void vistas::Ventana::alFrente(const Ficha &ficha) {
    if (auto *ventana = qobject_cast<QWindow *>(m_raiz.get()))
        traeAlFrente(*ventana, ficha);
}
