#pragma once

#include "core/contract/adaptor_interface.h"
#include "core/messages/sdk/message_node.h"
#include "data/sdk/tag.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

/// A key that still reaches the host during a take.
struct UnlockedKey {
    std::int32_t key = -1;      ///< a code of key_codes.h, 0 to 255; -1 for a locked key
    std::int32_t modifiers = 0; ///< bits of KeyModifier: keys that must be down
};

/// One attachment of the core: what an adaptor calls.
///
/// `attach` returns it and `detach` ends it; the core owns it. Unless its comment says otherwise,
/// an operation may be called at any time in between, on the thread that called `attach`, also
/// during takes and from inside the calls that the core makes. An operation that the present state
/// doesn't allow returns a code. detachNotify() is the last moment; the tools are gone by then.
/// Codes are those of ErrorCode, 0 for success. Times are seconds of scene time. The order of the
/// virtual operations is frozen; those of MessageNode come first.
///
/// A take:
/// 1. startRecording(): the checked tools are prepared, the countdown runs, the keyboard is
///    intercepted. Everything up to the end is one undo step of the host.
/// 2. The core's timer events write the frames; the host's loop, or pumpEvents, delivers them.
/// 3. stopRecording(), or Space or Escape, or the end of the range with auto-expand off.
/// 4. resimulate(start, end) runs the same tools again from the stored input.
class CoreInterface : public Util::MessageNode {
public:
    using Util::MessageNode::MessageNode;

    /// Returns the tree of tools, for the host to keep in its scene: types, names, check marks,
    /// panels, bindings, the tools' custom data and saved blocks, the visibility of their nodes and
    /// the recorded values, so that a take can be simulated again wherever the scene is opened.
    virtual Tag getConfiguration() = 0;
    /// Returns the tools that have no node in the scene, for the host to keep beside it; a tag
    /// "MVR".
    virtual Tag getDetachedConfiguration() = 0;
    /// Creates the tools that `configuration` describes, in its order, each with the scene nodes
    /// that it had, which AdaptorInterface::resolveNodes() finds. A tool whose nodes are missing is
    /// left out: the user is told, and CoreFaults tells which and why. A scene has no folder of
    /// models, so files that its tools name are looked for only in the user's documents and the
    /// shared data. Tools created during a take don't participate in it.
    virtual void loadConfiguration(Tag configuration) = 0;
    /// Destroys all tools, last first; their scene objects stay. Call it when the host closes its
    /// scene: it can't be undone.
    virtual void deleteAllInstances() = 0;
    /// Opens the main dialog above the host's window `parentWindow` (0: none), or anew if it is
    /// minimised. Returns 0, or the code of "MAINDLG_ALREADYOPEN" if it is open or of
    /// "NOMAINDLGCOMPONENT" if its layout is missing; then nothing changed.
    [[nodiscard]] virtual std::int32_t openMainDialog(std::intptr_t parentWindow) = 0;
    /// Closes the main dialog. Returns 0, or the code of "MAINDLG_NOTOPEN" if it isn't open.
    [[nodiscard]] virtual std::int32_t closeMainDialog() = 0;
    /// Returns true while the dialog's window exists, also minimised.
    virtual bool isMainDialogOpen() = 0;
    /// The host's time changed outside of a recording: brings the tools up to `time`. A host
    /// needn't call it during a take, where the core sets the time; then it reaches only the tools
    /// that participate.
    virtual void update(double time) = 0;
    /// Returns true during a recording or a resimulation.
    virtual bool isRecording() = 0;
    /// Replaces the whole table of the keys that reach the host during a take. A key outside 0 to
    /// 255 is skipped.
    virtual void setUnlockedKeys(const std::vector<UnlockedKey>& keys) = 0;
    /// Starts a take at the host's current time. Returns 0, or the code of "ALREADYRECORDING" while
    /// one runs and until the host's undo step of the last one is closed, so in recordingFinished()
    /// too.
    [[nodiscard]] virtual std::int32_t startRecording() = 0;
    /// Ends the take; when it returns, the tools are finished and the host's undo step is closed. A
    /// resimulation is only asked to stop: it ends after its present frame, before resimulate()
    /// returns. Does nothing if neither runs. Always returns 0.
    virtual std::int32_t stopRecording() = 0;
    /// Returns the slow motion: 1 is real time, each step more halves the speed.
    virtual std::int32_t getSlowMotion() = 0;
    /// Sets the slow motion from the next frame on, also in a running take. Users are offered 1 to
    /// 10, but other values work too: below 1 a take runs faster than real time, as far as three
    /// frames per event allow, and leaves time to later takes; from about 1000 on the time of a
    /// take stands still.
    virtual void setSlowMotion(std::int32_t slowMotion) = 0;
    /// Runs the checked tools again for the frames after `start` up to `end`; returns when it is
    /// done or was stopped. If `start` is on the grid of frames, within a hundredth of a
    /// millisecond, the frames have the very times of a take; otherwise they count from `start`.
    /// Returns 0, or the code of "ALREADYRECORDING" as startRecording() does,
    /// or of "RESIMULATE_BADRANGE" for a span that isn't a number or has more than 2e9 frames.
    [[nodiscard]] virtual std::int32_t resimulate(double start, double end) = 0;
    /// Checks or unchecks a tool and all below it; an unknown name does nothing. During a take this
    /// applies to the next one.
    virtual void setInstanceChecked(std::string name, bool checked) = 0;
    /// Applies a stored configuration profile to a tool; unknown names do nothing.
    virtual void setInstanceConfigProfile(std::string name, std::string profile) = 0;
    /// Adds a setting of the adaptor's own and returns the node that tells of changes (message
    /// 324). The settings files are read again, so that a stored value of the id applies at once;
    /// other settings go back to their stored values too: add first, then change. For an `id` in
    /// use, changes nothing and returns the node of the setting that has it. A setting with an `id`
    /// below 0 is never read back. The core owns the node.
    virtual Util::MessageNode* addProperty(std::int32_t id, double defaultValue) = 0;
    virtual Util::MessageNode* addProperty(std::int32_t id, std::string defaultValue) = 0;
    virtual Util::MessageNode* addProperty(std::int32_t id, std::int32_t defaultValue) = 0;
    virtual Util::MessageNode* addProperty(std::int32_t id, bool defaultValue) = 0;
    /// Without this a literal would convert to bool.
    Util::MessageNode* addProperty(std::int32_t id, const char* defaultValue) {
        return addProperty(id, std::string(defaultValue));
    }
    /// `value` points to a variable of the setting's own type (bool, std::int32_t, std::string or
    /// double); nothing checks the type. Returns false, and changes nothing, for an unknown id or a
    /// null `value`.
    virtual bool getProperty(std::int32_t id, void* value) = 0;
    virtual bool setProperty(std::int32_t id, const void* value) = 0;

    /// Returns one of the interfaces of core_extensions.h, whose helpers call this; 0 if this core
    /// doesn't have it. `id` is one of CoreExtension, `data` the version that the caller was built
    /// for. All later additions to this interface come through this operation.
    virtual std::intptr_t extend(std::int32_t id, std::intptr_t data) = 0;
};

/// The library's exports, under these undecorated names, each called on the host's user-interface
/// thread. `attach` returns null if the versions differ, or if an adaptor is attached already or
/// just being attached. `detach` ends an attachment, and a take that runs, and returns 0. From
/// inside a call that the core makes (such as setTime(), recordingFinished() or detachNotify(), or
/// an operation of a tool), from a dialog of the core and during resimulate() it changes nothing
/// and returns the code of "DETACH_NOTNOW": call it again after that has returned, after a take or
/// a resimulation at the earliest when recordingFinished() has. Call it once with success for each
/// attachment: with any other pointer, also null, it only takes the keys of its takes from the
/// core. `getVersion` may be called at any time while the library is loaded.
using AttachFunction = CoreInterface* (*)(AdaptorInterface* adaptor);
using DetachFunction = std::int32_t (*)(CoreInterface* coreOrNull);
using GetVersionFunction = std::int32_t (*)();

} // namespace MVR
