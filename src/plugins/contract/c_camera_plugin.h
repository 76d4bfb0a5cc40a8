#pragma once

#include "plugins/contract/c_camera.h"
#include "plugins/contract/c_extendable.h"

#include <cstdint>
#include <string>

namespace MVR {

/// The version that `getVersion` of a library of tools must return.
constexpr std::int32_t kPluginInterfaceVersion = 250;

/// The attribute "version" of the elements "MVR_Plugin", which describe tools.
constexpr const char* kToolDataVersion = "2.5";

/// The most descriptors that the core asks one library for: a list that never ends must not hang
/// the host.
constexpr std::int32_t kMostPlugins = 4096;

class CCameraPlugin;

/// The two exports of a library of tools, under the undecorated names "getVersion" and "getPlugin".
using GetPluginVersion = std::int32_t (*)();
using GetPlugin = CCameraPlugin* (*)(std::int32_t index);

/// The descriptor of one kind of tool: what it is called, and how tool objects are made.
///
/// A library of tools derives one class per kind of tool and exports two functions:
///
///     extern "C" std::int32_t getVersion();                          // kPluginInterfaceVersion
///     extern "C" MVR::CCameraPlugin* getPlugin(std::int32_t index);  // null ends the list
///
/// 1. The core calls getVersion() once, right after loading the library. If the result isn't
///    kPluginInterfaceVersion, it unloads the library again.
/// 2. It calls getPlugin(0), getPlugin(1), ... until the result is null. Each result is a new
///    descriptor; the core owns it from then on and frees it with destroy() when the core is
///    unloaded.
/// 3. It calls create() for each tool that is placed.
///
/// The core may ask for the texts and the version at any time from step 2 on, also during takes. No
/// host is attached at steps 1 and 2. Only the core calls these operations, on the host's
/// user-interface thread. The order of the virtual operations is frozen.
class CCameraPlugin : public CExtendable {
public:
    /// Makes a tool object; must succeed. Called only while a host is attached. The core owns the
    /// object and frees it with CCamera::destroy().
    virtual CCamera* create(CCamera::CreateParam* param) = 0;
    /// Returns the type name, unique among all tools; also the first part of a new instance's name.
    [[nodiscard]] virtual std::string getName() = 0;
    /// Returns the storage key: folder names with "/" between the levels, such as "core/prm".
    [[nodiscard]] virtual std::string getKey() { return getName(); }
    /// Returns one line for the list of tools.
    [[nodiscard]] virtual std::string getDescription() = 0;
    /// Returns category names, separated by ";".
    [[nodiscard]] virtual std::string getCategory() = 0;
    /// Returns the longer text about the tool.
    [[nodiscard]] virtual std::string getAbout() { return ""; }
    [[nodiscard]] virtual std::string getAuthor() { return ""; }
    /// Returns major * 1000 + minor * 100 + revision.
    [[nodiscard]] virtual std::int32_t getVersion() { return 100; }
    /// Frees the descriptor in the library that made it; the only way to free one. Called once,
    /// after the last of its tools was destroyed.
    virtual void destroy() { delete this; }
    virtual ~CCameraPlugin() = default;

    /// Returns getVersion() as text: "8.1.1" for 8101.
    [[nodiscard]] std::string getVersionText() {
        const std::int32_t version = getVersion();
        return std::to_string(version / 1000) + "." + std::to_string(version % 1000 / 100) + "." +
               std::to_string(version % 100);
    }
};

inline CCamera* CCamera::createCode(CCameraPlugin* plugin, CreateParam* param) {
    param->plugin = plugin;
    return plugin->create(param);
}

} // namespace MVR
