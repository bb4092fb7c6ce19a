#pragma once

#include <QObject>

/// Answers every drag over a window with "copy", whatever its source proposes.
///
/// An area that takes a drag says so itself, but Qt Quick does not pass on its
/// first answer when the pointer comes from another part of the window: until
/// it moves again the source hears "move", and one that is let go just then
/// may delete the originals.
class SoloCopia : public QObject {
public:
    /// Becomes a child of it.
    explicit SoloCopia(QObject *ventana);

    bool eventFilter(QObject *ventana, QEvent *evento) override;
};
