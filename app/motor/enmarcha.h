#pragma once

#include "estado.h"

#include <QHash>
#include <QObject>
#include <QUrl>

/// The jobs of this process that leaving would cut short: what is neither at an
/// end nor cancelled, with or without a screen that shows it, since a screen may
/// go before its job. Main thread only.
class EnMarcha : public QObject {
    Q_OBJECT

public:
    using Turno = quint64; ///< names one of them; 0 none

    enum class Obra { Guardar, Recuperar };
    struct Trabajo {
        Obra obra;
        QUrl archivo; ///< that is made, or taken out of
    };

    /// The one instance of the process.
    static EnMarcha &trabajos();

    [[nodiscard]] bool hay() const { return !m_trabajos.isEmpty(); }
    [[nodiscard]] bool hay(Obra obra) const;

    Turno entra(const Trabajo &trabajo);
    /// Again, or for none, does nothing.
    void sale(Turno turno);
    /// The same for one that has reached its end with nobody left to publish
    /// it.
    void saleSolo(Turno turno, const estados::Estado &final);

signals:
    /// One has ended that no Motor shows any more, `Hecho` or `Error`. What
    /// was cancelled before ends without it.
    void acabaSolo(const EnMarcha::Trabajo &trabajo, const estados::Estado &final);
    /// There are fewer now.
    void mengua();

private:
    using QObject::QObject;

    QHash<Turno, Trabajo> m_trabajos;
    Turno m_ultimo = 0;
};
