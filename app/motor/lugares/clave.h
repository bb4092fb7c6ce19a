#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The file that hands a password to the engine: a password never stands on a
/// command line, where every user of the machine could read it. It lives as long
/// as this object. Any thread.
class FicheroDeClave {
public:
    /// Writes the password (UTF-8, no line end) to a new file "okz-" + UUID of
    /// the temporary folder. Only the owner can read it, from the first byte on.
    /// A failure is not told: there is a path all the same, nothing half-written
    /// stays, and the engine reports what it finds.
    ///
    /// An absent password and an empty one are the same: nothing is written, and
    /// the path is empty.
    explicit FicheroDeClave(const std::optional<QString> &contrasena);
    /// Removes the file; a failure is ignored.
    ~FicheroDeClave();
    FicheroDeClave(const FicheroDeClave &) = delete;
    FicheroDeClave &operator=(const FicheroDeClave &) = delete;

    [[nodiscard]] const QByteArray &ruta() const { return m_ruta; }

    /// The file stays, for good.
    void deja() { m_ruta.clear(); }

private:
    QByteArray m_ruta;
};
