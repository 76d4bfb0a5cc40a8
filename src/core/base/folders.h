/// \file
/// The two roots of all folders: the user's documents and the install values. Paths are written
/// with "\" and end without one; the file layer folds them.
#pragma once

#include <string>

namespace MVR {

/// The folder of the user's own data; empty, with a line in the log, if it can't be found. Nothing
/// is cached: each call asks anew.
std::string resolveDocumentsPath();

/// An install value: "path" (install folder), "datapath" (shared data), "pluginpath" (tool
/// libraries) or "docpath" (documentation). Empty, with a line in the log, if it can't be found.
std::string readInstallValue(const std::string& name);

/// The user's folder for one host: documents root, "\data\" and the adaptor's name. Empty without a
/// documents root, so that nothing is looked for in the root of the file system.
std::string resolveUserFolder(const std::string& adaptorName);

} // namespace MVR
