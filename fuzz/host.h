// A small host with the whole core, for the fuzzers of what it loads.
#pragma once

#include "core/base/sdk/log.h"
#include "core/core_implementation.h"
#include "core/entry.h"
#include "input_file.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/c_camera_plugin.h"
#include "plugins/libraries/core_library.h"
#include "plugins/libraries/plugin.h"
#include "require.h"
#include "support/test_adaptor.h"

#include <string>

/// A kind of tools with everything that a kind must tell of itself.
template <class Tool>
class ToolKind final : public MVR::CCameraPlugin {
public:
    explicit ToolKind(const char* name) : name_(name) {}
    MVR::CCamera* create(MVR::CCamera::CreateParam* param) override { return new Tool(param); }
    std::string getName() override { return name_; }
    std::string getDescription() override { return "A tool for a fuzzer"; }
    std::string getCategory() override { return "Tests"; }

private:
    const char* name_;
};

/// Attached as long as the process runs; never freed.
struct Host {
    /// Uses the folders of this registry.
    explicit Host(const std::string& registry = "") {
        const auto* const bytes = reinterpret_cast<const std::uint8_t*>(registry.data());
        setenv("MIRVANE_REGISTRY", writeInput(bytes, registry.size()).c_str(), 1);
        MVR::libraryLoaded(MVR::Platform::ownModule());
        core = static_cast<MVR::CoreImplementation*>(MVR::attachAdaptor(&adaptor));
        require(core != nullptr);
        MVR::Log::setThreshold(MVR::Log::Critical); // else the log of refusals fills the memory
    }

    template <class Tool>
    void addKind(const char* name) {
        std::int32_t error = 0;
        auto* const library = MVR::CoreLibrary::instance();
        require(MVR::Plugin::create(library, new ToolKind<Tool>(name), error) != nullptr);
    }
    std::size_t toolCount() const { return core->getInstances(false).size(); }
    void undoAll() {
        while (adaptor.undo()) {
        }
    }
    void redoAll() {
        while (adaptor.redo()) {
        }
    }
    void clear() {
        core->deleteAllInstances();
        adaptor.clearUndo();
        adaptor.nodes.clear();
        adaptor.calls.clear();
    }

    MVR::Testing::RecordingAdaptor adaptor;
    MVR::CoreImplementation* core = nullptr;
};
