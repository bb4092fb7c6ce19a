#pragma once

#include <QMimeData>
#include <QPointer>

class Saque;

/// What is being taken out, as other programs ask for it: a list of file URIs
/// and nothing else. Programs may go on asking when the drag is over, and so
/// this outlives the taking out.
class DatosDeSaque : public QMimeData {
    Q_OBJECT

public:
    explicit DatosDeSaque(Saque &saque);

    [[nodiscard]] QStringList formats() const override;
    [[nodiscard]] bool hasFormat(const QString &tipo) const override;

protected:
    /// Where a drop cannot be held back (see arrastre.cpp) this waits for the
    /// copies, with the window alive. Nothing after a failure.
    [[nodiscard]] QVariant retrieveData(const QString &tipo, QMetaType como) const override;

private:
    void espera() const;

    QPointer<Saque> m_saque; // gone when the drag is over
    QByteArray m_lista;      // the URIs, once they are final
};
