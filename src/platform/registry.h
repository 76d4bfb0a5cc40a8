#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Named values under keys, for the user and for the machine. A hive is a text file:
///
///     # where the tools lie
///     [SOFTWARE\Oskelworks\Lensetta]
///     path=/opt/mirvane
///     datapath=/opt/mirvane/data
///     pluginpath=/opt/mirvane/plugins
///
/// A line in brackets opens a key. A value is all that follows the first "="; blanks around name
/// and value don't count. Lines that begin with "#" or ";" are comments. Any other line, and a
/// value before the first key, is skipped. Keys and names match in any ASCII case; the first of two
/// equal names counts.
///
/// Where a hive is looked up:
/// 1. MIRVANE_REGISTRY in the environment names one file that serves both hives; nothing else is
///    read.
/// 2. Otherwise the user's hive is mirvane/registry.ini in the XDG config folder ($XDG_CONFIG_HOME,
///    or ~/.config), and the machine's is the first mirvane/registry.ini of the system's config
///    folders ($XDG_CONFIG_DIRS, or /etc/xdg).
/// 3. A value of "...\Explorer\Shell Folders" that the user's file doesn't have comes from the XDG
///    user folders: "Personal" is the documents folder, "Desktop" the desktop. If the machine has
///    no file, the install values lead to the folder of the library: "path" is that folder,
///    "datapath", "pluginpath" and "docpath" are "data", "plugins" and "doc" in it.
///
/// Nothing is cached: each call reads the files anew. A file of more than a megabyte is refused.
namespace MVR::Platform {

/// The keys that the system reads: the user's folders, and where it is installed.
constexpr const char* kShellFoldersKey =
    R"(Software\Microsoft\Windows\CurrentVersion\Explorer\Shell Folders)";
constexpr const char* kInstallKey = R"(SOFTWARE\Oskelworks\Lensetta)";

enum class Hive { CurrentUser, LocalMachine };

enum class RegistryResult {
    Found,
    KeyMissing,
    ValueMissing,
    FileUnreadable, ///< the file that MIRVANE_REGISTRY names; `lastFileError` tells why
};

/// Values are read into buffers of this size, which includes a closing zero. A value that doesn't
/// fit counts as missing.
constexpr std::size_t kRegistryBufferBytes = 1024;

/// Reads a value; `out` changes only if it is found. Stands for RegOpenKeyExA, RegQueryValueExA,
/// RegCloseKey.
[[nodiscard]] RegistryResult readRegistryValue(Hive hive, std::string_view key,
                                               std::string_view name, std::string& out);

/// Returns the XDG user folder behind a value of `kShellFoldersKey`, whatever the hives name; "" if
/// there is none.
[[nodiscard]] std::string xdgFolder(std::string_view name);

} // namespace MVR::Platform
