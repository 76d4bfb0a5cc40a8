// The border to the object of one placed tool.
#pragma once

#include "core/base/border.h"
#include "core/util/sdk/dynamic_object.h"
#include "instance/open_snapshots.h"
#include "plugins/contract/c_camera.h"

#include <cstdint>
#include <string>

namespace MVR {

class CoreServices;
class Plugin;

/// Owns the tool object and makes all calls of it. What a call throws ends here: the log names
/// library, tool and call, and in a take the tool sits out the rest. A snapshot that is still out
/// when the call returns in which it was taken is ended. Any call may destroy this object.
class ToolObject {
public:
    /// All outlive it. `name` is the instance's.
    ToolObject(CoreServices& services, Plugin& plugin, const std::string& name);
    ToolObject(const ToolObject&) = delete;
    ToolObject& operator=(const ToolObject&) = delete;
    ~ToolObject();

    /// Has the plug-in make the object; there is none if it can't.
    void make(CInterface& access);
    /// The object's last call comes when get() is null already.
    void destroy();
    [[nodiscard]] CCamera* get() const { return code_; }

    /// Returns true if a call threw since resume(), in a take or when its controls were polled.
    [[nodiscard]] bool isSittingOut() const { return isSittingOut_; }
    void resume() { isSittingOut_ = false; }

    // These return the code of "EXCEPTION" if the call threw.
    [[nodiscard]] std::int32_t init();
    [[nodiscard]] std::int32_t create();
    [[nodiscard]] std::int32_t load();
    [[nodiscard]] std::int32_t save();
    /// Returns false if the call threw.
    bool startRecording(double time);
    void record(double time);
    void finishRecording(double time);
    void setTime(double time);
    /// Returns 0 if the call threw.
    std::intptr_t extend(std::int32_t id, std::intptr_t data);
    [[nodiscard]] bool supportsExtension(std::int32_t id);

    /// Returns the tool's snapshots, or null while it is in no call, so that no return ends them.
    [[nodiscard]] OpenSnapshots* getSnapshots() {
        return innermost_ != nullptr ? &snapshots_ : nullptr;
    }
    /// A node ends: its snapshots go with it.
    void forgetSnapshots(const SceneNode& node) { snapshots_.forget(node); }

private:
    /// A call of the object, on the stack.
    struct Frame {
        Frame* outer;
        std::uint64_t firstSnapshot;
        bool isAlive; // the ToolObject
    };

    template <class Call>
    bool run(const char* operation, const Call& call, bool isPolled = false);
    template <class Call>
    std::int32_t runForCode(const char* operation, const Call& call);
    [[nodiscard]] std::string describe() const;
    void endSnapshots(const char* operation, std::uint64_t first);

    CoreServices& services_;
    Plugin& plugin_;
    const std::string& name_;
    CCamera* code_ = nullptr; // owned
    OpenSnapshots snapshots_;
    Frame* innermost_ = nullptr;
    bool isSittingOut_ = false;
    bool isSnapshotTold_ = false; // in this take
};

} // namespace MVR
