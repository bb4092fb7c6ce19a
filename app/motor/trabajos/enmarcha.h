#pragma once

#include "trabajo.h"

#include <QList>
#include <QObject>

#include <memory>

/// The jobs that live: begun and not yet at their end, with or without a screen
/// that shows them, since a screen may go before its job. Main thread only.
class EnMarcha : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The one of the process, for whoever is not given another.
    static EnMarcha &todos();

    /// In the order in which they began, those that were cancelled and have yet
    /// to end among them.
    [[nodiscard]] const QList<std::shared_ptr<Trabajo>> &vivos() const { return m_vivos; }

    /// Whether leaving would cut something short: what saves, or takes out into a
    /// folder of the user's, and was not cancelled.
    [[nodiscard]] bool hay() const { return hay(Obra::Guardar) || hay(Obra::Recuperar); }
    /// Whether there are such jobs, but for those that were cancelled.
    [[nodiscard]] bool hay(Obra obra) const;

    /// For the jobs themselves.
    void entra(const std::shared_ptr<Trabajo> &trabajo);
    void sale(const Trabajo &trabajo);

signals:
    /// One has ended that somebody followed who is gone. What was cancelled
    /// before ends without it.
    void acabaSolo(const Trabajo &trabajo);
    /// There are fewer now that count.
    void mengua();

private:
    QList<std::shared_ptr<Trabajo>> m_vivos;
};
