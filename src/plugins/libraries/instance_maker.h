// What the libraries know of the instances of their tools, which are a floor above.
#pragma once

#include <cstddef>
#include <string>

namespace MVR {

class CoreImplementation;
class Plugin;
class PluginInstance;

/// An instance as its plug-in lists it. Part of the instance.
class PluginMember {
public:
    [[nodiscard]] virtual PluginInstance* getInstance() const = 0;
    /// Returns the core that the instance belongs to.
    [[nodiscard]] virtual CoreImplementation* getCore() const = 0;
    /// Destroys the instance, and with it this.
    virtual void end() = 0;

    virtual ~PluginMember() = default;

private:
    friend class Plugin;
    std::size_t place_ = 0; // index in the plug-in's list
};

/// Makes instances.
class InstanceMaker {
public:
    /// Makes an instance of `plugin` in `core`, which has entered itself into the plug-in's list.
    [[nodiscard]] virtual PluginInstance* makeInstance(CoreImplementation* core, Plugin* plugin,
                                                       const std::string& name) = 0;

protected:
    ~InstanceMaker() = default;
};

} // namespace MVR
