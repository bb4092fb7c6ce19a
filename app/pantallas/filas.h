#pragma once

#include "contenido.h"
#include "seleccion.h"

#include <QAbstractListModel>

#include <optional>

class Escritorio;

/// The browser's list: the entries that the search leaves visible, and which of
/// them are selected. Main thread only.
///
/// A row is a place in the visible list, and must be one that is there. The
/// selection belongs to the entries: a selected entry that the search hides
/// stays selected.
class Filas : public QAbstractListModel {
    Q_OBJECT

public:
    enum Papel {
        Nombre = Qt::UserRole, ///< QString
        Carpeta,               ///< QString, empty at the top
        Ruta,                  ///< QString, the whole path
        Icono,                 ///< QString, a system image's name
        Tamano,                ///< QString in words, empty but for files
        Elegida,               ///< bool
        Abriendose,            ///< bool: it is being taken out to be opened or dragged
        EsCarpeta,             ///< bool
        Descripcion,           ///< QString for a screen reader
        Fallo,                 ///< QString, why it could not be taken out the last time; or empty
    };

    /// The desktop must outlive the list.
    explicit Filas(Escritorio &escritorio, QObject *padre = nullptr);
    ~Filas() override;

    /// Shows another content under the same search; nothing of it is selected.
    void ponContenido(ContenidoCompartido contenido);

    /// Shows the entries whose path contains the text; all when it is empty.
    /// A text that goes on from the last one looks only at what was visible.
    void busca(const QString &texto);

    /// The path of the entry that is being taken out to be opened, if any.
    void ponAbriendo(std::optional<QString> ruta);
    /// The path of the entry that could not be taken out, and why; nobody's until
    /// the next one, if empty.
    void ponFallo(const QString &ruta, const QString &fallo);
    /// The entries that are being taken out to be dragged, by their numbers.
    void ponArrastradas(const std::vector<uint32_t> &indices);

    [[nodiscard]] qsizetype entradas() const;
    [[nodiscard]] qsizetype elegidas() const { return qsizetype(m_seleccion.cuantas()); }
    /// The paths of all selected entries, in the engine's order.
    [[nodiscard]] QStringList rutasElegidas() const;
    /// Their numbers in `contenido`, ascending.
    [[nodiscard]] std::vector<uint32_t> indicesElegidos() const { return m_seleccion.todas(); }
    [[nodiscard]] bool elegida(int fila) const { return m_seleccion.tiene(indiceDe(fila)); }
    [[nodiscard]] const ContenidoCompartido &contenido() const { return m_contenido; }
    [[nodiscard]] Entrada entrada(int fila) const;

    [[nodiscard]] int rowCount(const QModelIndex &padre = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &indice, int papel) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

public slots:
    /// Selects this row alone, and remembers it as the one to stretch from.
    void elige(int fila);
    /// Adds the row, or takes it out.
    void alterna(int fila);
    /// Selects the rows from the remembered one to this one, and no others.
    void estira(int fila);
    /// Selects every visible row, and no others.
    void eligeTodo();

signals:
    void seleccionCambia();

private:
    [[nodiscard]] uint32_t indiceDe(int fila) const;
    [[nodiscard]] QString icono(const Entrada &entrada) const;
    [[nodiscard]] QString tamano(const Entrada &entrada) const;
    [[nodiscard]] QString descripcion(const Entrada &entrada) const;
    void eligeTramo(int primera, int ultima);
    void avisa(int primera, int ultima);
    void avisaDeTodas() { avisa(0, rowCount() - 1); }

    Escritorio &m_escritorio;
    ContenidoCompartido m_contenido;
    QString m_busca;
    std::vector<uint32_t> m_visibles; // entry numbers; not used without a search
    Seleccion m_seleccion;
    int m_ancla = 0; // the row that a stretched selection starts from
    std::optional<QString> m_abriendo;
    QString m_conFallo; // a path
    QString m_fallo;
    Seleccion m_arrastradas;
};
