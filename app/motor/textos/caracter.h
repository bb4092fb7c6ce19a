#pragma once

#include <QExplicitlySharedDataPointer>
#include <QSharedData>
#include <QString>

/// One user-perceived character: a letter with its accents, an emoji of several
/// parts. Takes the space of a pointer, for there is one in every entry of an
/// archive and nearly all are ASCII; those share one copy of each. Any thread.
class Caracter {
public:
    /// An ASCII character.
    explicit Caracter(char ascii = '?');

    /// Any character; `texto` is that one and nothing more.
    explicit Caracter(const QString &texto);

    [[nodiscard]] const QString &texto() const { return m_dato->texto; }

    /// By canonical equivalence: however its accents are stored.
    friend bool operator==(const Caracter &a, const Caracter &b) {
        return a.m_dato == b.m_dato || a.m_dato->canonico == b.m_dato->canonico;
    }
    friend bool operator==(const Caracter &a, char ascii) {
        return a.texto() == QLatin1Char(ascii);
    }
    friend size_t qHash(const Caracter &caracter, size_t semilla = 0) {
        return qHash(caracter.m_dato->canonico, semilla);
    }

private:
    struct Dato : QSharedData {
        explicit Dato(const QString &t);
        QString texto;
        QString canonico;
    };
    QExplicitlySharedDataPointer<Dato> m_dato;
};

Q_DECLARE_TYPEINFO(Caracter, Q_RELOCATABLE_TYPE);
