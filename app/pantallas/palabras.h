#pragma once

#include "textos/estado.h"

#include <QList>
#include <QStringList>
#include <QUrl>

class Escritorio;

/// How a job has ended, for whoever was not looking.
struct Final {
    QString titulo;
    QString texto;
};

/// From values to the words that the user reads. Main thread only, for the sake
/// of the desktop that words the sizes.
namespace palabras {

/// A remaining time, without the "~". `s`: seconds, not negative.
QString cuantoFalta(double s);

/// Of what is to be packed: the file names; a headline, empty for nothing; the
/// file name to propose for the archive.
QStringList nombres(const QList<QUrl> &origenes);
QString titular(const QList<QUrl> &origenes);
QString nombrePropuesto(const QList<QUrl> &origenes);

/// Of a compression: both sizes; what was saved, empty for an empty input; how
/// long it took.
QString tamanos(const estados::Hecho &hecho, const Escritorio &escritorio);
QString ahorro(const estados::Hecho &hecho, const Escritorio &escritorio);
QString duracion(const estados::Hecho &hecho);
/// All three in a sentence, for a screen reader.
QString anuncio(const estados::Hecho &hecho, const Escritorio &escritorio);

/// The end of a compression, and of taking something out of `archivo`; `estado`
/// is Hecho or Error.
Final finalDeGuardar(const estados::Estado &estado, const Escritorio &escritorio);
Final finalDeRecuperar(const estados::Estado &estado, const QUrl &archivo);

} // namespace palabras
