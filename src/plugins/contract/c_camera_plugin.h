#pragma once

#include "plugins/contract/c_camera.h"
#include "plugins/contract/c_extendable.h"

#include <cstdint>
#include <string>

namespace MVR {

/// The version that `getVersion` of a library of tools must return.
constexpr std::int32_t kPluginInterfaceVersion = 250;

/// The attribute "version" of the elements "MVR_Plugin" that tell of tools.
constexpr const char* kToolDataVersion = "2.5";

/// The most descriptors that are taken from one library: one whose list never ends must not take
/// the host with it.
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
/// 1. getVersion() is called once, right after the library was loaded. Any other result than
///    kPluginInterfaceVersion frees the library again.
/// 2. getPlugin(0), getPlugin(1), ... until the result is null. Each result is a new descriptor;
///    the core owns it from then on and frees it with destroy() when the core is unloaded.
/// 3. create() for each tool that is placed.
///
/// The texts and the version may be asked for at any time from step 2 on, in takes too. No host is
/// attached at steps 1 and 2. All calls come on the host's user-interface
/// thread, from the core. The order of the virtual operations is frozen.
class CCameraPlugin : public CExtendable {
public:
    /// Makes a tool object; must succeed. Only while a host is attached. The core owns it and frees
    /// it with CCamera::destroy().
    virtual CCamera* create(CCamera::CreateParam* param) = 0;
    /// The type name, unique among all tools; also the first part of a new instance's name.
    [[nodiscard]] virtual std::string getName() = 0;
    /// The storage key: folder names with "/" between the levels, such as "core/prm".
    [[nodiscard]] virtual std::string getKey() { return getName(); }
    /// One line for the list of tools.
    [[nodiscard]] virtual std::string getDescription() = 0;
    /// Category names, separated by ";".
    [[nodiscard]] virtual std::string getCategory() = 0;
    /// The longer text about the tool.
    [[nodiscard]] virtual std::string getAbout() { return ""; }
    [[nodiscard]] virtual std::string getAuthor() { return ""; }
    /// major * 1000 + minor * 100 + revision.
    [[nodiscard]] virtual std::int32_t getVersion() { return 100; }
    /// Frees the descriptor in the library that made it; the only way to free one. Comes once,
    /// after the last of its tools was destroyed.
    virtual void destroy() { delete this; }
    virtual ~CCameraPlugin() = default;

    /// getVersion() as text: 8101 reads 8.1.1.
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
