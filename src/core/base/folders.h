// The two roots of all folders: the user's documents and the install values. Paths are written
// with "\" and end without one; the file layer folds them.
#pragma once

#include <string>

namespace MVR {

/// Returns the folder of the user's own data. If it can't be found, returns "" and logs a line.
/// Nothing is cached: each call looks anew. The documents folder above it is made if it is missing;
/// if it can't be, that of the XDG user folders serves, and `replaced`, unless null, becomes a
/// sentence that tells so.
std::string resolveDocumentsPath(std::string* replaced = nullptr);

/// Returns an install value: "path" (install folder), "datapath" (shared data), "pluginpath" (tool
/// libraries) or "docpath" (documentation). If it can't be found, returns "" and logs a line.
std::string readInstallValue(const std::string& name);

/// Returns the user's folder for one host: the documents root, "\data\" and the adaptor's name.
/// Returns "" without a documents root, so that nothing is searched in the root of the file system.
std::string resolveUserFolder(const std::string& adaptorName);

} // namespace MVR
