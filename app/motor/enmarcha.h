#pragma once

#include "estado.h"

#include <QObject>
#include <QSet>

/// The compressions of this process that are neither at an end nor cancelled,
/// with or without a screen that shows them: a screen may go before its job.
/// Main thread only.
class EnMarcha : public QObject {
    Q_OBJECT

public:
    using Turno = quint64; ///< names one of them; 0 none

    /// The one instance of the process.
    static EnMarcha &compresiones();

    [[nodiscard]] bool hay() const { return !m_turnos.isEmpty(); }

    Turno entra();
    /// Again, or for none, does nothing.
    void sale(Turno turno);
    /// The same for one that has reached its end with nobody left to publish
    /// it.
    void saleSola(Turno turno, const estados::Estado &final);

signals:
    /// One has ended that no Motor shows any more, `Hecho` or `Error`. What
    /// was cancelled before ends without it.
    void acabaSola(const estados::Estado &final);
    /// The last one has gone.
    void acaban();

private:
    using QObject::QObject;

    QSet<Turno> m_turnos;
    Turno m_ultimo = 0;
};
