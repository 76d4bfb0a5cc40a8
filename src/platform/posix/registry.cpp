#include "platform/registry.h"

#include "platform/libraries.h"
#include "platform/posix/ascii.h"
#include "platform/sdk/files.h"

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

namespace MVR::Platform {

namespace {

constexpr std::uint64_t kLargestRegistryBytes = 1 << 20; ///< a hive of ours has a few lines
constexpr std::string_view kRegistryFile = "/mirvane/registry.ini";

/// The values that the machine itself can tell when no file does.
struct UserFolder {
    const char* value;
    const char* xdgName;
    const char* usualName; ///< below the home folder, used if it exists
};
constexpr UserFolder kUserFolders[] = {{"Personal", "XDG_DOCUMENTS_DIR", "/Documents"},
                                       {"Desktop", "XDG_DESKTOP_DIR", "/Desktop"}};

struct InstallFolder {
    const char* value;
    const char* folder; ///< added to the library's folder
};
constexpr InstallFolder kInstallFolders[] = {
    {"path", ""}, {"datapath", "/data"}, {"pluginpath", "/plugins"}, {"docpath", "/doc"}};

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string_view trim(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r";
    const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
    return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

/// Removes the next line from `text` and returns it without its end and the blanks around it.
std::string_view takeLine(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = trim(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

bool readHive(const std::string& path, std::string& text) {
    return readFile(path, text, kLargestRegistryBytes);
}

RegistryResult findValue(std::string_view hive, std::string_view key, std::string_view name,
                         std::string& out) {
    RegistryResult result = RegistryResult::KeyMissing;
    bool inKey = false;
    while (!hive.empty()) {
        const std::string_view line = takeLine(hive);
        if (line.empty() || line.front() == '#' || line.front() == ';')
            continue;
        if (line.front() == '[') {
            inKey = line.back() == ']' && equalButCase(trim(line.substr(1, line.size() - 2)), key);
            result = inKey ? RegistryResult::ValueMissing : result;
            continue;
        }
        const std::size_t equals = line.find('=');
        if (!inKey || equals == std::string_view::npos ||
            !equalButCase(trim(line.substr(0, equals)), name))
            continue;
        out = trim(line.substr(equals + 1));
        return RegistryResult::Found;
    }
    return result;
}

/// Returns a folder of the environment; relative ones don't count.
std::string environmentFolder(const char* name) {
    std::string folder = environment(name);
    return folder.substr(0, 1) == "/" ? folder : "";
}

std::string configFolder() {
    const std::string folder = environmentFolder("XDG_CONFIG_HOME");
    const std::string home = environmentFolder("HOME");
    return !folder.empty() || home.empty() ? folder : home + "/.config";
}

bool readUserHive(std::string& text) {
    std::string folder = configFolder();
    return !folder.empty() && readHive(folder.append(kRegistryFile), text);
}

bool readMachineHive(std::string& text) {
    const std::string named = environment("XDG_CONFIG_DIRS");
    std::string_view folders = named.empty() ? std::string_view("/etc/xdg") : named;
    while (!folders.empty()) {
        const std::size_t end = std::min(folders.find(':'), folders.size());
        std::string folder(folders.substr(0, end));
        folders.remove_prefix(std::min(end + 1, folders.size()));
        if (folder.substr(0, 1) == "/" && readHive(folder.append(kRegistryFile), text))
            return true;
    }
    return false;
}

/// Returns a folder of the user's list, which has lines such as
/// XDG_DOCUMENTS_DIR="$HOME/Documents".
std::string listedUserFolder(const UserFolder& wanted, const std::string& home) {
    std::string list;
    if (!readHive(configFolder() + "/user-dirs.dirs", list))
        return "";
    std::string_view rest = list;
    while (!rest.empty()) {
        const std::string_view line = takeLine(rest);
        const std::size_t equals = std::min(line.find('='), line.size());
        if (line.substr(0, equals) != wanted.xdgName || line.size() < equals + 3 ||
            line[equals + 1] != '"' || line.back() != '"')
            continue;
        constexpr std::string_view kHome = "$HOME";
        const std::string_view folder = line.substr(equals + 2, line.size() - equals - 3);
        if (folder.substr(0, kHome.size()) == kHome)
            return home + std::string(folder.substr(kHome.size()));
        return folder.substr(0, 1) == "/" ? std::string(folder) : "";
    }
    return "";
}

RegistryResult findUserFolder(std::string_view name, std::string& out) {
    const std::string home = environmentFolder("HOME");
    if (home.empty())
        return RegistryResult::KeyMissing;
    for (const UserFolder& wanted : kUserFolders) {
        if (equalButCase(wanted.value, name)) {
            std::string folder = listedUserFolder(wanted, home);
            if (folder.empty()) {
                const std::vector<FoundFile> usual = listFiles(home + wanted.usualName);
                const bool isThere = !usual.empty() && usual.front().isFolder;
                folder = isThere ? home + wanted.usualName : home;
            }
            out = folder;
            return RegistryResult::Found;
        }
    }
    return RegistryResult::ValueMissing;
}

RegistryResult findBesideLibrary(std::string_view name, std::string& out) {
    const std::string file = ownModulePath();
    const std::size_t separator = file.rfind('/');
    if (separator == std::string::npos)
        return RegistryResult::KeyMissing;
    for (const InstallFolder& wanted : kInstallFolders) {
        if (equalButCase(wanted.value, name)) {
            out = file.substr(0, separator) + wanted.folder;
            return RegistryResult::Found;
        }
    }
    return RegistryResult::ValueMissing;
}

RegistryResult findInHives(Hive hive, std::string_view key, std::string_view name,
                           std::string& out) {
    std::string text;
    const std::string onlyFile = environment("MIRVANE_REGISTRY");
    if (!onlyFile.empty()) {
        return readHive(onlyFile, text) ? findValue(text, key, name, out)
                                        : RegistryResult::FileUnreadable;
    }
    const bool hasFile = hive == Hive::CurrentUser ? readUserHive(text) : readMachineHive(text);
    const RegistryResult result = findValue(text, key, name, out);
    if (result == RegistryResult::Found)
        return result;
    if (hive == Hive::CurrentUser && equalButCase(key, kShellFoldersKey))
        return findUserFolder(name, out);
    if (hive == Hive::LocalMachine && !hasFile && equalButCase(key, kInstallKey))
        return findBesideLibrary(name, out);
    return result;
}

} // namespace

RegistryResult readRegistryValue(Hive hive, std::string_view key, std::string_view name,
                                 std::string& out) {
    std::string value;
    const RegistryResult result = findInHives(hive, key, name, value);
    if (result != RegistryResult::Found)
        return result;
    if (value.size() >= kRegistryBufferBytes)
        return RegistryResult::ValueMissing;
    out = std::move(value);
    return result;
}

std::string xdgFolder(std::string_view name) {
    std::string folder;
    (void)findUserFolder(name, folder); // otherwise it stays empty
    return folder;
}

} // namespace MVR::Platform
