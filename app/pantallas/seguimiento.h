#pragma once

#include "palabras.h"

#include <QObject>
#include <QString>

#include <functional>

class Motor;

/// Tells the desktop how the jobs of a Motor go: how far, and how they ended.
/// A job that the user has cancelled ends without a word. Main thread only.
class Seguimiento : public QObject {
    Q_OBJECT

public:
    /// `final` words the end when the Motor's state is one. Motor and desktop
    /// must outlive this.
    Seguimiento(Motor &motor, Escritorio &escritorio, std::function<Final()> final);
    /// Nobody follows the job any more, although it may still run.
    ~Seguimiento() override;

private:
    void mira();

    Motor &m_motor;
    Escritorio &m_escritorio;
    std::function<Final()> m_final;
    bool m_trabajando = false;
};
