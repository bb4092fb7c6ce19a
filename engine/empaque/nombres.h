#pragma once

#include <filesystem>
#include <set>
#include <string>

namespace orcalin {

/// Gives every source a name of its own in the archive.
class Nombres {
public:
    /// The name for `origen`: its last component, or if that is taken the first
    /// free one of «nombre (2)», «nombre (3)»…; of a file that is no folder the
    /// number goes before the extension. `.` and `..` are called by the folder's
    /// real name, and the root folder «raíz».
    std::string para(const std::filesystem::path &origen, bool carpeta);

private:
    std::set<std::string> usados;
};

} // namespace orcalin
