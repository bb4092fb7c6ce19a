#include "caracter.h"

#include <array>

Caracter::Dato::Dato(const QString &t)
    : texto(t)
    , canonico(t.normalized(QString::NormalizationForm_C)) {}

Caracter::Caracter(const QString &texto)
    : m_dato(new Dato(texto)) {}

Caracter::Caracter(char ascii) {
    static const auto todos = [] {
        std::array<QExplicitlySharedDataPointer<Dato>, 128> nuevos;
        for (size_t i = 0; i < nuevos.size(); ++i)
            nuevos[i] = new Dato(QString(QLatin1Char(static_cast<char>(i))));
        return nuevos;
    }();
    m_dato = todos.at(static_cast<unsigned char>(ascii));
}
