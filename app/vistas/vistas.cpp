#include "vistas.h"

#include "escritorio/frente.h"
#include "imagenes.h"
#include "inicio/orcalinapp.h"
#include "puertos/identidad.h"
#include "solocopia.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QIcon>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

void qml_register_types_Orcalin(); // made by the build from registros.h

namespace {

const QString kVentana = QStringLiteral("qrc:/Orcalin/Ventana.qml");

// What takes long to find and needs nothing of the window's files: done while
// they are being read.
void preparaPrimerCuadro() {
    QGuiApplication::setWindowIcon(QIcon::fromTheme(QLatin1String(kIdentidad)));
    (void)QFontMetrics(QGuiApplication::font()).height();
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
    // Not the engine made for applications: that one puts Qt's own texts in the
    // user's language over ours.
    : m_app(app)
    , m_motorQml(std::make_unique<QQmlEngine>()) {
    // Nothing else refers to it, and the linker would leave it out.
    qml_register_types_Orcalin();
    m_motorQml->addImageProvider(QStringLiteral("sistema"), new Imagenes); // the engine owns it
    m_leida = std::make_unique<QQmlComponent>(m_motorQml.get(), QUrl(kVentana),
                                              QQmlComponent::Asynchronous);
}

vistas::Ventana::~Ventana() = default;

void vistas::Ventana::haz() {
    preparaPrimerCuadro();
    // Waits for the rest of what is being read.
    QQmlComponent ventana(m_motorQml.get(), QUrl(kVentana));
    m_raiz.reset(ventana.createWithInitialProperties(
        {{QStringLiteral("app"), QVariant::fromValue(&m_app)}}));
    if (m_raiz)
        new SoloCopia(m_raiz.get());
    else
        qCritical("%s", qUtf8Printable(ventana.errorString()));
    m_leida.reset();
}

bool vistas::Ventana::alFrente(const Ficha &ficha) {
    if (m_leida)
        haz();
    auto *ventana = qobject_cast<QWindow *>(m_raiz.get());
    if (ventana != nullptr)
        traeAlFrente(*ventana, ficha);
    return ventana != nullptr;
}
