// The first calls of a tool's life.
#pragma once

#include "core/base/sdk/log.h"
#include "plugins/instance_reference.h"
#include "plugins/model/model_place.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

class AdaptorInterface;
class SceneNode;

/// Starts the tool of a new reference: as a new one, or, if its data has a saved block, as the one
/// that was saved, with the scene objects that it had then.
class ToolStart {
public:
    /// `data` is the tool's element "MVR_Plugin", `entry` the log's open entry of its making.
    ToolStart(InstanceReference& reference, const Tag& data, ModelPlace& place, Log& entry);

    /// `folder` is where the data came from. Returns false, logs it and cancels the host's open
    /// step, if the tool refused or a scene object is missing. A tool that refuses init() is
    /// destroyed; one that refuses later is left outside the tree until the attachment ends. Also
    /// returns false, with the step closed, if the tool removed itself.
    [[nodiscard]] bool run(std::string folder);

private:
    [[nodiscard]] bool initialise(std::string folder);
    [[nodiscard]] bool createNew();
    [[nodiscard]] bool resume();
    [[nodiscard]] bool bindNodes();
    void reportMissing(const std::vector<SceneNode*>& nodes, const std::vector<std::string>& names);
    void cancelStep();
    void giveUp();
    void logRefusal(const char* text, std::int32_t code);
    [[nodiscard]] PluginInstance& instance() const;
    [[nodiscard]] AdaptorInterface& adaptor() const { return adaptor_; }
    [[nodiscard]] bool isAlive() const { return reference_.get() != nullptr; }

    InstanceReference::Watch reference_; // a tool, or the host's undo, may destroy it
    const Tag& data_;
    ModelPlace& place_;
    Log& entry_;
    AdaptorInterface& adaptor_;
    bool isCancelled_ = false; // the host's step
};

} // namespace MVR
