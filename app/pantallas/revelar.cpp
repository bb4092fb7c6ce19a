#include "revelar.h"

#include "escritorio/escritorio.h"
#include "motor/ruta.h"

void revelaOAvisa(Escritorio &escritorio, const QUrl &url) {
    escritorio.revela(url, [&escritorio, url] {
        escritorio.avisa(Aviso::Siempre, QStringLiteral("No hay con qué mostrarlo"),
                         QStringLiteral("Está en «%1».").arg(QString::fromUtf8(ruta::nativa(url))));
    });
}
