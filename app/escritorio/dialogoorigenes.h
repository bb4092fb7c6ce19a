#pragma once

#include <QFileDialog>

/// A file panel in which files and folders can be chosen at once. The platform's
/// own panels take either the one or the other.
class DialogoOrigenes : public QFileDialog {
    Q_OBJECT

public:
    explicit DialogoOrigenes(QWidget *padre = nullptr);

    /// What was chosen, in the order of the list; valid after acceptance.
    [[nodiscard]] const QList<QUrl> &elegidos() const { return m_elegidos; }

public slots:
    /// The "Elegir" button: takes what is marked, folders included. With
    /// nothing marked the name that was typed counts.
    void accept() override;

private:
    [[nodiscard]] QList<QUrl> marcados() const;
    void siguelaSeleccion();

    QList<QUrl> m_elegidos;
};
