#pragma once

#include <CLI/CLI.hpp>

namespace orcalin {

/// Sets the help of the program, or of one of its commands, in Spanish: how it
/// is called (with the options that cannot be left out), what it is for, a
/// table of what it takes, and the footer, where its examples are.
class Ayuda : public CLI::Formatter {
public:
    std::string make_help(const CLI::App *app, std::string nombre,
                          CLI::AppFormatMode modo) const override;
};

/// Why a command line was not understood: in Spanish, on one line, with the
/// argument that is to blame where it is known.
std::string porque(const CLI::ParseError &error);

} // namespace orcalin
