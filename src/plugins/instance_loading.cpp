#include "plugins/instance_loading.h"

#include "core/core_implementation.h"
#include "core/error_code.h"
#include "core/log.h"
#include "instance/plugin_instance.h"
#include "plugins/extension_ids.h"
#include "plugins/instance_reference.h"
#include "plugins/library_manager.h"
#include "plugins/plugin.h"

#include <deque>
#include <optional>
#include <utility>

namespace MVR {
namespace {

/// One tool in the making, with its open entry in the log. Its tools below come between the
/// constructor and end().
class ToolLoad {
public:
    ToolLoad(CoreImplementation* core, const Tag& data, const std::string& path)
        : core_(core), data_(data), path_(path) {
        isMade_ = begin();
    }

    /// The data of the next tool below, null if there is none left.
    const Tag* nextChild() {
        while (isMade_ && nextChild_ < data_.childCount()) {
            const Tag& child = data_.child(nextChild_++);
            if (child.hasName("MVR_Plugin"))
                return &child;
        }
        return nullptr;
    }

    /// Takes over what became of a tool below.
    void addChild(Util::Owned<InstanceReference> child, std::int32_t childError) {
        const bool isUsable = errors().find(childError).getType() > ErrorCode::Error;
        if (isUsable && reference_.get() != nullptr)
            reference_.get()->add(child.release());
        else
            child.reset();
        if (isUsable)
            return;
        Log entry("Error detected while instanciating plugins. Trying to continue anyway",
                  Log::Warning);
        error_ = errors().get("INSTANCIATOR_COULDNOTCREATESUBPLUGIN",
                              "Some plugins could not be instanciated", ErrorCode::Warning);
    }

    std::pair<Util::Owned<InstanceReference>, std::int32_t> end() {
        if (isMade_)
            adaptor().endUndo();
        return {Util::Owned<InstanceReference>(isMade_ ? reference_.get() : nullptr), error_};
    }

private:
    static ErrorCode& errors() { return *ErrorCode::instance(); }
    AdaptorInterface& adaptor() const { return *core_->getAdaptor(); }

    bool begin();
    bool makeInstance(Plugin& plugin, const std::string& type);
    void applyStates();
    bool startTool();
    void logRefusal(const char* text, std::int32_t code);

    CoreImplementation* core_;
    const Tag& data_;
    const std::string& path_;
    std::optional<Log> entry_;
    InstanceReference::Watch reference_{nullptr}; // a tool, or the host's undo, may end it
    std::int32_t error_ = 0;
    std::int32_t nextChild_ = 0;
    bool isMade_ = false;
};

bool ToolLoad::begin() {
    if (!data_.hasName("MVR_Plugin")) {
        Log(Log::Error).write("Trying to instanciate plugin with invalid data structure");
        error_ = errors().report("INVALIDOKFDATASTRUCTURE");
        return false;
    }
    if (data_.attribute("compressed") == "1")
        Log(Log::Warning).write("Packed tool data can't be read");
    std::string type = data_.child("type").value();
    if (type.empty())
        type = data_.child("pluginname").value();
    entry_.emplace("Creating " + type, Log::Notice);
    Plugin* const plugin = LibraryManager::instance()->findPlugin(type);
    if (plugin == nullptr) {
        entry_->write("Could not find plugin type", type, Log::Warning);
        error_ = errors().report("PLUGINNOTFOUND");
        return false;
    }
    adaptor().beginUndo("Create Oskel " + type);
    if (!makeInstance(*plugin, type))
        return false;
    applyStates();
    return startTool();
}

bool ToolLoad::makeInstance(Plugin& plugin, const std::string& type) {
    std::string name = data_.child("name").value();
    PluginInstance* const instance = plugin.createInstance(core_, name);
    if (instance->getCode() == nullptr) { // the plug-in made no tool object
        instance->destroy();
        adaptor().cancelUndo();
        entry_->write("Unable to instanciate plugin", type, Log::Error);
        error_ = errors().report("COULDNOTINSTANCIATEPLUGIN");
        return false;
    }
    instance->setNameFromData(name.empty() ? instance->getName() : name);
    instance->setUnderCreation(true);
    reference_.set(core_->createReference(instance));
    return reference_.get() != nullptr;
}

void ToolLoad::applyStates() {
    InstanceReference& reference = *reference_.get();
    const auto isOff = [this](const char* key) { return data_.child(key).value() == "false"; };
    if (isOff("visible"))
        reference.setShown(false);
    if (isOff("expanded"))
        reference.setExpanded(false);
    if (isOff("checked"))
        reference.setChecked(false, true);
    reference.getInstance()->setCustomData(data_.child("customdata"));
}

/// The first calls of the tool's life.
bool ToolLoad::startTool() {
    CCamera& tool = *reference_.get()->getInstance()->getCode();
    {
        Log entry("initializing plugin", Log::Notice);
        std::string path = path_;
        tool.extend(ToolExtension::kDataFolder, reinterpret_cast<std::intptr_t>(&path));
        if (const std::int32_t code = tool.init(); code != 0) {
            adaptor().cancelUndo();
            logRefusal("instance init returned error", code);
            if (reference_.get() != nullptr) // unless the host took it back with the step
                reference_.get()->destroy();
            return false;
        }
        entry.write("init returned successfully");
    }
    // So that nobody takes a tool made anew for the one that was saved.
    if (!data_.child("savedata").isEmpty())
        entry_->write("Saved data can't be read: the tool is made anew", Log::Warning);
    {
        Log entry("creating plugin", Log::Notice);
        // A tool that fails here stays outside the tree, if the host doesn't take it back, until
        // the core is detached.
        if (const std::int32_t code = tool.create(); code != 0) {
            logRefusal("instance create returned error", code);
            adaptor().cancelUndo();
            return false;
        }
    }
    entry_->write("create returned successfully");
    return true;
}

/// The tool refused its own making: no error of ours.
void ToolLoad::logRefusal(const char* text, std::int32_t code) {
    entry_->write(text, errors().find(code).getMessage(), Log::Error);
}

} // namespace

Util::Owned<InstanceReference> instantiate(CoreImplementation* core, const Tag& data,
                                           std::int32_t& error, const std::string& path) {
    std::deque<ToolLoad> open; // not the machine's stack, which nested data could exhaust
    open.emplace_back(core, data, path);
    while (true) {
        if (const Tag* const child = open.back().nextChild()) {
            open.emplace_back(core, *child, path);
            continue;
        }
        auto [reference, code] = open.back().end();
        open.pop_back();
        if (open.empty()) {
            error = code;
            return std::move(reference); // a structured binding isn't moved by itself
        }
        open.back().addChild(std::move(reference), code);
    }
}

} // namespace MVR
