#include "abridor.h"

#include <QDesktopServices>
#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>

#include <unistd.h>

namespace {

// On some desktops the opener lives as long as the application that it has
// found; how that ends later says nothing of the opening.
constexpr qint64 kPlazo = 10'000; // milliseconds

QProcess *nuevoAbridor(const QString &programa, const QUrl &url) {
    // Nobody's child: whoever destroys it would end what the user looks at.
    auto *abridor = new QProcess;
    abridor->setProgram(programa);
    abridor->setArguments({QString::fromLatin1(url.toEncoded())});
    abridor->setStandardInputFile(QProcess::nullDevice());
    abridor->setStandardOutputFile(QProcess::nullDevice());
    abridor->setStandardErrorFile(QProcess::nullDevice());
    abridor->setChildProcessModifier([] { ::setsid(); }); // a terminal's Ctrl+C is not for it
    return abridor;
}

} // namespace

// Qt would start the same program, and never hear how it ended.
void abreFuera(const QUrl &url, std::function<void()> siNo) {
    const QString programa = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (programa.isEmpty()) {
        if (!QDesktopServices::openUrl(url))
            siNo();
        return;
    }
    QProcess *abridor = nuevoAbridor(programa, url);
    QElapsedTimer desde;
    desde.start();
    const auto acaba = [abridor, desde, siNo = std::move(siNo)](bool bien) {
        abridor->deleteLater();
        if (!bien && !desde.hasExpired(kPlazo))
            siNo();
    };
    QObject::connect(abridor, &QProcess::finished, abridor,
                     [acaba](int estado, QProcess::ExitStatus como) {
                         acaba(como == QProcess::NormalExit && estado == 0);
                     });
    QObject::connect(abridor, &QProcess::errorOccurred, abridor,
                     [acaba](QProcess::ProcessError error) {
                         if (error == QProcess::FailedToStart)
                             acaba(false);
                     });
    abridor->start();
}
