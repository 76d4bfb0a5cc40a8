#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

/// Something by which the last take isn't what was performed.
struct CoreTakeNote {
    enum Kind : std::int32_t {
        kSilentInput = 1, ///< a control that drives a tool sent nothing
        kLateFrames = 2,  ///< frames came more than half a frame late
        kBadValue = 3,    ///< a value wasn't a finite number; the one before it stood for it
        kToolFault = 4,   ///< a tool, driver or adaptor failed
        kEnded = 5,       ///< the take was ended by CoreTakes::end()
    };
    std::int32_t kind = 0;
    std::string tool;        ///< "" if it is no matter of one
    std::string input;       ///< of the tool, or ""
    std::int64_t frames = 0; ///< of kLateFrames: how many
    std::string text;        ///< for the user, in English, with all of the above
};

/// The running take, and what there is to say about the last one.
///
/// getTakes() in core_extensions.h returns it. The core owns it. All calls come on the host's
/// thread, at any time. A later version adds operations at the end.
class CoreTakes {
public:
    static constexpr std::int32_t kVersion = 1;

    virtual std::int32_t getVersion() = 0;
    /// Returns how far the running take is behind the clock, in seconds of scene time: what is due
    /// and not simulated yet. 0 outside of live takes. It grows while the host doesn't let the
    /// core's timer in.
    virtual double getDelay() = 0;
    /// Ends the take or resimulation because the scene changed under it: the user deleted an object
    /// that a tool moves, or went back in the undo list. As CoreInterface::stopRecording(), and
    /// `reason` becomes a note. Returns false if neither runs.
    virtual bool end(std::string reason) = 0;
    /// Returns what there is to tell of the last take or resimulation, or of the running one so
    /// far. It is complete in AdaptorInterface::recordingFinished(), and stays until the next one
    /// starts.
    virtual std::vector<CoreTakeNote> list() = 0;

protected:
    ~CoreTakes() = default;
};

} // namespace MVR
