#pragma once

#include "plugins/contract/c_extendable.h"

#include <cstdint>
#include <string>
#include <utility>

namespace MVR {

class CCameraPlugin;
class CInterface;

/// A tool object: the logic of one placed tool. The author of a library of tools derives from it.
///
/// 1. CCameraPlugin::create() makes it; getInterface() is null until create() has returned.
/// 2. extend(45, custom data), extend(52, folder), then init(), where a tool asks for its input
///    properties.
/// 3. create() for a new tool, or load() for one made from saved data, inside an undo step.
/// 4. extend(42), when all tools of one creation exist.
/// 5. Any number of takes: startRecording(time), then record(time) for each frame, then
///    finishRecording(time), all inside one undo step. Between takes, setTime(time) and save().
/// 6. destroy(), at any time from step 1 on.
///
/// Only the core calls the virtual operations; those of CExtendable at any time from step 1 on.
/// Times are seconds of scene time. Codes are 0 for success. All calls are made on the host's
/// user-interface thread. The order of the virtual operations and of the fields is frozen.
///
/// An exception that leaves an operation is caught, and the log names library, tool and operation.
/// In init(), create(), load() and save() it counts as a non-zero code. In a take the tool sits out
/// the rest of it: no more record(), no values for its virtual controls; finishRecording() comes
/// all the same, and its keys up to then stay.
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

    /// A take or a resimulation starts. A tool may read the scene at `time` here, which is kept,
    /// but must not write yet: the nodes aren't ready for it.
    virtual void startRecording(double time) { (void)time; }
    /// The take or resimulation has ended. Called once for each startRecording(), also for a take
    /// that was stopped before its first frame. `time` may be one frame after the last recorded
    /// one; what a tool writes here is written at `time`.
    virtual void finishRecording(double time) { (void)time; }
    /// Simulates one frame, between startRecording() and finishRecording(): reads the input
    /// properties and moves the scene nodes. Must not block.
    virtual void record(double time) { (void)time; }
    /// The host's current time changed outside of a recording: the host called
    /// CoreInterface::update().
    virtual void setTime(double time) { (void)time; }
    /// First step of the creation; called once. A non-zero code stops it and destroys the tool.
    [[nodiscard]] virtual std::int32_t init() { return 0; }
    /// Second step for a new tool; called once. Makes its scene nodes. A non-zero code stops the
    /// creation.
    [[nodiscard]] virtual std::int32_t create() { return 0; }
    /// Second step for a tool from a saved scene, instead of create(). CInterface::getSaveData()
    /// has the block that save() stored, and the tool's scene nodes are there. A non-zero code
    /// stops the creation.
    [[nodiscard]] virtual std::int32_t load() { return 0; }
    /// The scene is being saved, or the tool by itself. Passes the block that load() needs to
    /// CInterface::setSaveData(); a tool that needs none just returns 0. With a non-zero code no
    /// block is saved, and create() makes the tool anew when the scene is opened. May be called at
    /// any time after the creation, also during takes.
    [[nodiscard]] virtual std::int32_t save() { return 0; }
    /// Frees the object in the library that made it; the only way to free one.
    virtual void destroy() { delete this; }
    virtual ~CCamera() = default;

    /// Stores `plugin` in `param` and has the descriptor make the tool object, which the caller
    /// owns. For the core. Defined in c_camera_plugin.h.
    static CCamera* createCode(CCameraPlugin* plugin, CreateParam* param);

    // The rest may be called at any time in the tool's life.
    [[nodiscard]] CCameraPlugin* getPlugin() const { return plugin_; }
    [[nodiscard]] const std::string& getName() const { return name_; }
    /// Only for the core, when the user renames the tool.
    void setName(std::string name) { name_ = std::move(name); }
    /// The tool's access to core and host; valid from the first extend() on, for the life of the
    /// tool.
    [[nodiscard]] CInterface* getInterface() const { return interface_; }
    /// Only for the core, right after creation.
    void setInterface(CInterface* tool) { interface_ = tool; }

private:
    CCameraPlugin* plugin_;
    std::string name_;
    CInterface* interface_ = nullptr;
};

} // namespace MVR
