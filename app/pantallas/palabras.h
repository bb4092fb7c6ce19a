#pragma once

#include "textos/estado.h"

#include <QList>
#include <QString>
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

/// What was put into a field of one line, without line ends: a pasted line brings
/// its own along, which nobody sees, and nobody would type again where it is a
/// password.
QString enUnaLinea(QString texto);

/// The system image that stands for a folder or a file to be packed, and what it
/// shows, in a word.
QString iconoDe(bool carpeta);
QString claseDe(bool carpeta);

/// Of what is to be packed: a headline, empty for nothing; the file name to
/// propose for the archive.
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
