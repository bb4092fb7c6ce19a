#pragma once

#include "saque/atributos.h"
#include "saque/en_camino.h"

#include <string>

namespace orcalin {

/// Something of the archive, complete, that is to stand in a folder. All of
/// these throw FalloDeEntrada or Fallo.
class Nuevo {
public:
    explicit Nuevo(CarpetaAbierta carpetaDada)
        : carpeta(std::move(carpetaDada)) {}
    Nuevo(const Nuevo &) = delete;
    Nuevo &operator=(const Nuevo &) = delete;
    virtual ~Nuevo() = default;

    [[nodiscard]] const CarpetaAbierta &donde() const { return carpeta; }

    /// It stands as `nombre` from now on, if nothing else does; false otherwise.
    /// Whoever comes first has the name: there is no moment between looking and
    /// writing.
    virtual bool aparece(const std::string &nombre) = 0;

    /// Whether what is called `nombre` is the same already.
    [[nodiscard]] virtual bool esComo(const std::string &nombre) const = 0;

    /// It takes the place of what is called `nombre`, in one step; of a folder
    /// only if that is empty.
    virtual void ocupa(const std::string &nombre);

    /// Whether it came out without some attribute that this user may give.
    [[nodiscard]] bool faltaAlgo() const { return falta; }

protected:
    [[nodiscard]] int madre() const { return carpeta->fd.numero(); }

    CarpetaAbierta carpeta;
    bool falta = false;
};

/// A regular file whose content is all in memory. It is made under its own name
/// at once if that is free: another one would cost more than the content.
class NuevoEnMemoria : public Nuevo {
public:
    NuevoEnMemoria(CarpetaAbierta carpeta, Octetos contenido, const Atributos &atributos);
    bool aparece(const std::string &nombre) override;
    [[nodiscard]] bool esComo(const std::string &nombre) const override;
    void ocupa(const std::string &nombre) override;

private:
    Octetos contenido;
    const Atributos &atributos;
    bool sencillo;
};

/// A regular file that was written as it came.
class NuevoEscrito : public Nuevo {
public:
    NuevoEscrito(CarpetaAbierta carpeta, const Atributos &atributos);
    [[nodiscard]] FicheroNuevo &contenido() { return fichero; }
    /// To be called when all of it is there.
    void completa();
    bool aparece(const std::string &nombre) override;
    [[nodiscard]] bool esComo(const std::string &nombre) const override;
    void ocupa(const std::string &nombre) override;

private:
    const Atributos &atributos;
    bool sencillo;
    FicheroNuevo fichero;
};

class NuevoEnlace : public Nuevo {
public:
    NuevoEnlace(CarpetaAbierta carpeta, std::string destino, const Atributos &atributos);
    bool aparece(const std::string &nombre) override;
    [[nodiscard]] bool esComo(const std::string &nombre) const override;

private:
    std::string destino;
    const Atributos &atributos;
};

/// Another name of a regular file; a copy of it where the disk has no such
/// names, or no more of them.
class NuevoNombre : public Nuevo {
public:
    /// The file is called `nombre` in the folder `otra`.
    NuevoNombre(CarpetaAbierta carpeta, CarpetaAbierta otra, std::string nombre);
    bool aparece(const std::string &nombre) override;
    [[nodiscard]] bool esComo(const std::string &nombre) const override;

private:
    [[nodiscard]] Descriptor abre() const;
    void copia();

    CarpetaAbierta otra;
    std::string deAntes;
    std::optional<FicheroNuevo> fichero; // the copy
};

} // namespace orcalin
