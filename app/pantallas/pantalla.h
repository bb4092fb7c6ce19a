#pragma once

#include "motor/motor.h"
#include "origenes.h"
#include "palabras.h"
#include "seguimiento.h"

#include <QObject>

#include <stop_token>

class Escritorio;

/// The compression screen without its drawing: what is selected, the options,
/// and which panel the driver's state asks for. Main thread only.
///
/// Everything that is shown is a property; the view binds to it and calls the
/// slots, and decides nothing.
class Pantalla : public QObject {
    Q_OBJECT
    Q_PROPERTY(Panel panel READ panel NOTIFY estadoCambia)
    Q_PROPERTY(bool encima READ encima NOTIFY encimaCambia)
    Q_PROPERTY(Origenes *elegidos READ elegidos CONSTANT)
    Q_PROPERTY(QString icono READ icono NOTIFY origenesCambian)
    Q_PROPERTY(QString clase READ clase NOTIFY origenesCambian)
    Q_PROPERTY(Contenido contenido READ contenido NOTIFY origenesCambian)
    Q_PROPERTY(QString cabecera READ cabecera NOTIFY cabeceraCambia)
    Q_PROPERTY(QString peso READ peso NOTIFY cabeceraCambia)
    Q_PROPERTY(QString resumen READ resumen NOTIFY cabeceraCambia)
    Q_PROPERTY(bool maximo READ maximo WRITE ponMaximo NOTIFY opcionesCambian)
    Q_PROPERTY(bool cifrar READ cifrar WRITE ponCifrar NOTIFY opcionesCambian)
    Q_PROPERTY(QString contrasena READ contrasena WRITE ponContrasena NOTIFY opcionesCambian)
    Q_PROPERTY(bool puedeGuardar READ puedeGuardar NOTIFY puedeGuardarCambia)
    Q_PROPERTY(QString titular READ titular NOTIFY origenesCambian)
    Q_PROPERTY(double pct READ pct NOTIFY estadoCambia)
    Q_PROPERTY(QString detalle READ detalle NOTIFY estadoCambia)
    Q_PROPERTY(QString tamanos READ tamanos NOTIFY estadoCambia)
    Q_PROPERTY(QString ahorro READ ahorro NOTIFY estadoCambia)
    Q_PROPERTY(QString duracion READ duracion NOTIFY estadoCambia)
    Q_PROPERTY(QString mensaje READ mensaje NOTIFY estadoCambia)
    Q_PROPERTY(QString anuncio READ anuncio NOTIFY estadoCambia)

public:
    /// In the order of the cases of `Motor::Estado`.
    enum class Panel { Trabajando, Hecho, Error, Reposo };
    Q_ENUM(Panel)

    /// What the drop area holds.
    enum class Contenido { Nada, Uno, Varios };
    Q_ENUM(Contenido)

    /// `inicial`: the items handed in from outside. The desktop and the list of
    /// jobs must outlive the screen.
    Pantalla(QList<QUrl> inicial, Escritorio &escritorio, EnMarcha &enMarcha = EnMarcha::todos(),
             QObject *padre = nullptr);
    ~Pantalla() override;

    [[nodiscard]] const QList<QUrl> &origenes() const { return m_origenes.urls(); }
    /// The same, to be shown in rows.
    [[nodiscard]] Origenes *elegidos() { return &m_origenes; }
    [[nodiscard]] Motor &motor() { return m_motor; }

    [[nodiscard]] Panel panel() const;
    /// Whether a drag that may be dropped is over the drop area.
    [[nodiscard]] bool encima() const { return m_encima; }
    /// Of a single item: its image's name, and what that shows, in a word.
    [[nodiscard]] QString icono() const;
    [[nodiscard]] QString clase() const;
    [[nodiscard]] Contenido contenido() const;

    /// The drop area's headline: the item's name, or the count and the total
    /// size. Empty without a selection.
    [[nodiscard]] QString cabecera() const;
    /// The size of everything selected in words; "…" while it is measured.
    [[nodiscard]] QString peso() const;
    /// All that the drop area shows, for who hears it.
    [[nodiscard]] QString resumen() const;

    /// The options; the password counts only while `cifrar` is on.
    [[nodiscard]] bool maximo() const { return m_maximo; }
    void ponMaximo(bool maximo);
    [[nodiscard]] bool cifrar() const { return m_cifrar; }
    void ponCifrar(bool cifrar);
    [[nodiscard]] QString contrasena() const { return m_contrasena; }
    void ponContrasena(const QString &contrasena);
    /// Something is selected, and there is a password if there is to be one.
    [[nodiscard]] bool puedeGuardar() const;

    /// The working panel: what is being packed, the fraction done (0 or less:
    /// not known), and the line under the bar with the remaining time.
    [[nodiscard]] QString titular() const { return palabras::titular(origenes()); }
    [[nodiscard]] double pct() const;
    [[nodiscard]] QString detalle() const;

    /// The result panel's lines. No saving line (empty) for an empty input.
    [[nodiscard]] QString tamanos() const;
    [[nodiscard]] QString ahorro() const;
    [[nodiscard]] QString duracion() const;

    /// The failure panel's text.
    [[nodiscard]] QString mensaje() const;

    /// What a screen reader says of the job by itself: that it goes on, every
    /// tenth of the way, and how it ended well.
    [[nodiscard]] QString anuncio() const;

public slots:
    /// The screen has come into view: takes `inicial` over, once.
    void aparece();

    /// A drag with these URLs has come over the drop area. Returns whether it
    /// may be dropped: only files and folders may.
    bool arrastreEntra(const QList<QUrl> &urls);
    void arrastreSale();
    /// They were dropped. A single archive is opened (`abreArchivo`); anything
    /// else replaces the selection, sorted by path. What is not a file is
    /// skipped.
    void suelta(const QList<QUrl> &urls);

    /// Asks for sources; replaces the selection unless cancelled.
    void elegir();
    /// Asks where to save and starts the job. Does nothing without a selection.
    void guardar();
    void cancelar();

    /// From the result: shows the archive in the file manager.
    void revela();
    /// From the result: back to an empty drop area.
    void otraCosa();
    /// From the failure: back, with selection and options kept.
    void volver();

signals:
    void estadoCambia();
    void encimaCambia();
    void origenesCambian();
    void cabeceraCambia();
    void opcionesCambian();
    void puedeGuardarCambia();
    /// A single archive was dropped: it is to be opened instead.
    void abreArchivo(const QUrl &archivo);

private:
    void ponEncima(bool encima);
    void ponOrigenes(QList<QUrl> origenes);
    void mide();

    const QList<QUrl> m_inicial;
    Escritorio &m_escritorio;
    Motor m_motor;
    bool m_encima = false;
    Origenes m_origenes;
    bool m_arrancado = false;
    bool m_maximo = false;
    bool m_cifrar = false;
    QString m_contrasena;
    std::optional<qint64> m_bytes; // of the selection, once measured
    std::stop_source m_medida;     // the measuring under way
    Seguimiento m_seguimiento;
};
