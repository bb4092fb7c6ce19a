#pragma once

#include "filas.h"
#include "motor/motor.h"
#include "raices.h"
#include "seguimiento.h"

#include <QObject>
#include <QUrl>

class Escritorio;

/// The archive browser without its drawing: lists one archive for its whole
/// life, searches it, opens and takes out what is in it. Main thread only.
class Explorador : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString nombre READ nombre CONSTANT)
    Q_PROPERTY(Panel panel READ panel NOTIFY cambia)
    Q_PROPERTY(QString texto READ texto NOTIFY cambia)
    Q_PROPERTY(Filas *filas READ filas CONSTANT)
    Q_PROPERTY(QString busca READ busca WRITE ponBusca NOTIFY buscaCambia)
    Q_PROPERTY(QString contrasena READ contrasena WRITE ponContrasena NOTIFY contrasenaCambia)
    Q_PROPERTY(QString cuenta READ cuenta NOTIFY listaCambia)
    Q_PROPERTY(QString rotuloRecuperar READ rotuloRecuperar NOTIFY listaCambia)
    Q_PROPERTY(bool hayElegidas READ hayElegidas NOTIFY listaCambia)
    Q_PROPERTY(QString abrirFallo READ abrirFallo NOTIFY abrirFalloCambia)

public:
    enum class Panel { Ocupado, Recuperado, Problema, PedirClave, Contenido };
    Q_ENUM(Panel)

    /// The desktop and the list of jobs must outlive the browser.
    Explorador(QUrl archivo, Escritorio &escritorio, EnMarcha &enMarcha = EnMarcha::todos(),
               QObject *padre = nullptr);
    ~Explorador() override;

    [[nodiscard]] const QUrl &archivo() const { return m_archivo; }
    [[nodiscard]] Motor &motor() { return m_motor; }
    [[nodiscard]] Filas *filas() { return &m_filas; }

    /// The archive's file name, for display.
    [[nodiscard]] QString nombre() const;

    /// The engine's state wins over the browser's own; there the password comes
    /// first, then a failure, then loading.
    [[nodiscard]] Panel panel() const;
    /// The line of the busy panel, or the message of the failure panel.
    [[nodiscard]] QString texto() const;

    /// What the path of a visible entry contains; everything shows when empty.
    [[nodiscard]] const QString &busca() const { return m_busca; }
    void ponBusca(const QString &busca);
    /// Of the archive, as typed; goes with every run of the engine. Empty: none.
    [[nodiscard]] const QString &contrasena() const { return m_contrasena; }
    void ponContrasena(const QString &contrasena);

    /// "N elementos", or "V de N" while searching.
    [[nodiscard]] QString cuenta() const;
    /// The button for the selected entries: "Recuperar N".
    [[nodiscard]] QString rotuloRecuperar() const;
    [[nodiscard]] bool hayElegidas() const { return m_filas.elegidas() > 0; }
    /// Why the last opening or drag failed; empty when it did not.
    [[nodiscard]] const QString &abrirFallo() const { return m_abrirFallo; }

public slots:
    /// Lists the archive in the background; when it is put on screen, and again
    /// by the two below. Of two that overlap the one that ends last counts.
    void cargar();
    /// From the password prompt: lists with what was typed, also with nothing.
    void enviaClave();
    /// From the failure: lists again, whatever had failed.
    void reintenta();

    /// Opens the entry of a visible row: a folder narrows the search to it,
    /// anything else is taken out to be viewed. One at a time: another call
    /// meanwhile is dropped.
    void abrir(int fila);

    /// Asks for a folder and takes out the entry of a visible row, those that
    /// are selected, or everything.
    void recuperarFila(int fila);
    void recuperarElegidas();
    void recuperarTodo();

    /// The mouse drags a visible row out of the window: with it go all that are
    /// selected; a row that was not is selected alone. They are taken out in the
    /// background, marked meanwhile, and the desktop carries them on. One drag
    /// at a time.
    void arrastrar(int fila);

    /// From the done panel: shows what was taken out in the file manager.
    void revela();
    /// From the done panel: back to the list as it was.
    void volver();

signals:
    void cambia();
    void buscaCambia();
    void contrasenaCambia();
    void listaCambia();
    void abrirFalloCambia();
    /// The list has arrived: the search field takes the focus.
    void focoBusqueda();

private:
    void acabaCarga(ContenidoCompartido contenido);
    void acabaCarga(const FalloAlLeer &fallo);
    void acabaAbrir(const QString &ruta, const Motor::Copia &copia);
    void ponAbriendo(std::optional<QString> ruta);
    void ponAbrirFallo(const QString &ruta, const QString &fallo);
    void quitaAbrirFallo() { ponAbrirFallo({}, {}); }
    void recuperar(const QStringList &rutas);
    void lleva(const QString &ruta, const Raices &raices, const QString &rotulo);
    [[nodiscard]] std::optional<QString> clave() const;

    const QUrl m_archivo;
    Escritorio &m_escritorio;
    EnMarcha &m_enMarcha;
    Motor m_motor;
    Filas m_filas;
    QString m_busca;
    QString m_contrasena;
    bool m_pideContrasena = false;
    std::optional<QString> m_fallo;
    bool m_cargando = true;
    std::optional<QString> m_abriendo;
    QString m_abrirFallo;
    bool m_arrastrando = false;
    Seguimiento m_seguimiento;
};
