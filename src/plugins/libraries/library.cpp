#include "plugins/libraries/library.h"

#include "core/base/sdk/log.h"
#include "plugins/libraries/library_manager.h"
#include "plugins/libraries/plugin.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace MVR {
namespace {

std::string nameOf(const std::string& path) {
    const std::size_t separator = path.find_last_of("/\\");
    const std::size_t start = separator == std::string::npos ? 0 : separator + 1;
    return path.substr(start, path.find('.', start + 1) - start);
}

} // namespace

Library::Library(Platform::LibraryHandle module, std::string path)
    : path_(std::move(path)), name_(nameOf(path_)), module_(module) {
    Log entry("Creating library", Log::Notice);
    (void)LibraryManager::instance()->addLibrary(this);
}

Library::~Library() {
    Log entry("Destroying library: " + name_, Log::Notice);
    entry.write("Removing plugins. Plugins in library", getPluginCount(), Log::OwnLevel);
    while (!plugins_.empty())
        plugins_.back()->destroy();
    entry.write("unregistering self from librarymanager");
    LibraryManager::instance()->removeLibrary(this);
}

std::int32_t Library::getPluginCount() const {
    return static_cast<std::int32_t>(plugins_.size());
}

Plugin* Library::getPlugin(std::int32_t index) const {
    return index >= 0 && index < getPluginCount() ? plugins_[static_cast<std::size_t>(index)]
                                                  : nullptr;
}

Plugin* Library::findPlugin(const std::string& type) const {
    const auto isOfType = [&type](Plugin* plugin) {
        if (plugin->getName() == type)
            return true;
        const std::vector<std::string> oldNames = plugin->getOldNames();
        return std::find(oldNames.begin(), oldNames.end(), type) != oldNames.end();
    };
    const auto found = std::find_if(plugins_.begin(), plugins_.end(), isOfType);
    return found != plugins_.end() ? *found : nullptr;
}

void Library::registerPlugin(Plugin* plugin) {
    Log entry("registering plugin to library", Log::Notice);
    entry.write("library", name_, Log::OwnLevel);
    entry.write("new plugin", plugin->getName(), Log::OwnLevel);
    plugins_.push_back(plugin);
}

void Library::unregisterPlugin(Plugin* plugin) {
    Log entry("unregistering plugin from library", Log::Notice);
    entry.write("library", name_, Log::OwnLevel);
    entry.write("plugin", plugin->getName(), Log::OwnLevel);
    const auto found = std::find(plugins_.rbegin(), plugins_.rend(), plugin);
    if (found == plugins_.rend())
        entry.write("Plugin not part of library");
    else
        plugins_.erase(std::next(found).base());
}

} // namespace MVR
