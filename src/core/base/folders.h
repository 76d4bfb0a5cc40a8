// The two roots of all folders: the user's documents and the install values. Paths are written
// with "\" and end without one; the file layer folds them.
#pragma once

#include <string>

namespace MVR {

/// Returns the folder of the user's own data. If it can't be found, returns "" and logs a line.
/// Nothing is cached: each call looks anew.
std::string resolveDocumentsPath();

/// Returns an install value: "path" (install folder), "datapath" (shared data), "pluginpath" (tool
/// libraries) or "docpath" (documentation). If it can't be found, returns "" and logs a line.
std::string readInstallValue(const std::string& name);

/// Returns the user's folder for one host: the documents root, "\data\" and the adaptor's name.
/// Returns "" without a documents root, so that nothing is searched in the root of the file system.
std::string resolveUserFolder(const std::string& adaptorName);

} // namespace MVR
