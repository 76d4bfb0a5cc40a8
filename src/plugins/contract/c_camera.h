#pragma once

#include "plugins/contract/c_extendable.h"

#include <cstdint>
#include <string>
#include <utility>

namespace MVR {

class CCameraPlugin;
class CInterface;

/// A tool object: the logic of one placed tool. Written by the author of a library of tools.
///
/// 1. CCameraPlugin::create() makes it; getInterface() is null until create() has returned.
/// 2. extend(45, custom data), extend(52, folder), then init(). The place to ask for input
///    properties.
/// 3. create() for a new tool, or load() for one made from saved data, inside an undo step.
/// 4. extend(42): all tools of one creation exist.
/// 5. Any number of takes: startRecording(time), then record(time) for each frame, then
///    finishRecording(time), all inside one undo step. Between takes setTime(time) and save().
/// 6. destroy(), at any time from step 1 on.
///
/// The core calls the virtual operations, nobody else; those of CExtendable at any time from step 1
/// on. Times are seconds of scene time. Codes are 0 for success. All calls come on the host's
/// user-interface thread; nothing that a tool throws is caught. The order of the virtual operations
/// and of the fields is frozen.
class CCamera : public CExtendable {
public:
    /// What a new tool object is built from. The core owns it for the length of the call.
    class CreateParam final : public CExtendable {
    public:
        std::int32_t version = 100;
        CCameraPlugin* plugin = nullptr; ///< filled in by createCode()
        std::string name;                ///< the instance name
    };

    explicit CCamera(const CreateParam* param) : plugin_(param->plugin), name_(param->name) {}
    CCamera(const CCamera&) = delete;
    CCamera& operator=(const CCamera&) = delete;

    /// A take or a resimulation starts. What stands at `time` may be read here, and is kept.
    /// Nothing is written yet: the nodes aren't ready for it.
    virtual void startRecording(double time) { (void)time; }
    /// Once for each startRecording, also for a take that was stopped before its first frame: the
    /// take or resimulation has ended. `time` may lie a frame behind the last one that was
    /// recorded; a tool that writes here writes there.
    virtual void finishRecording(double time) { (void)time; }
    /// One frame, between startRecording and finishRecording: read the input properties, move the
    /// scene nodes. Must not block.
    virtual void record(double time) { (void)time; }
    /// The host's current time changed outside a recording: it has called CoreInterface::update().
    virtual void setTime(double time) { (void)time; }
    /// First step of the creation, once. Non-zero stops it and destroys the tool.
    [[nodiscard]] virtual std::int32_t init() { return 0; }
    /// Second step for a new tool, once: make its scene nodes. Non-zero stops the creation.
    [[nodiscard]] virtual std::int32_t create() { return 0; }
    /// Second step for a tool from a saved scene, in place of create(): the block that save() gave
    /// is in CInterface::getSaveData(), and the scene nodes that it had are there. Non-zero stops
    /// the creation.
    [[nodiscard]] virtual std::int32_t load() { return 0; }
    /// The scene, or the tool with it, is saved; from creation on, between takes and in them. Hand
    /// the block that load() needs to CInterface::setSaveData(); a tool that needs none just
    /// returns 0. Non-zero: nothing is saved, and the tool is made anew by create() when the scene
    /// is opened.
    [[nodiscard]] virtual std::int32_t save() { return 0; }
    /// Frees the object in the library that made it; the only way to free one.
    virtual void destroy() { delete this; }
    virtual ~CCamera() = default;

    /// Stores `plugin` in `param` and has the descriptor make the tool object; the caller owns it.
    /// For the core. Defined in c_camera_plugin.h.
    static CCamera* createCode(CCameraPlugin* plugin, CreateParam* param);

    // From here on: at any time in the tool's life.
    [[nodiscard]] CCameraPlugin* getPlugin() const { return plugin_; }
    [[nodiscard]] const std::string& getName() const { return name_; }
    /// The core calls it when the user renames the tool; not for tools.
    void setName(std::string name) { name_ = std::move(name); }
    /// The door to core and host; valid from the first extend() on, for the life of the tool.
    [[nodiscard]] CInterface* getInterface() const { return interface_; }
    /// The core calls it right after creation; not for tools.
    void setInterface(CInterface* tool) { interface_ = tool; }

private:
    CCameraPlugin* plugin_;
    std::string name_;
    CInterface* interface_ = nullptr;
};

} // namespace MVR
