// The modal dialog that shows how far a resimulation is, and runs its slices.
#pragma once

#include "platform/dialogs.h"

#include <cstdint>

namespace MVR {

class Resimulation;

/// Runs a resimulation in slices, so that the message loop and the Stop button stay alive.
///
/// 1. Construct it for a resimulation whose take has begun.
/// 2. run() returns when all frames are done or the user pressed Stop. Either way the resimulation
///    has been finished.
class ResimulationDialog final : public Platform::DialogLogic {
public:
    /// `resimulation` must outlive run().
    explicit ResimulationDialog(Resimulation& resimulation) : resimulation_(&resimulation) {}

    void run(Platform::WindowHandle owner);

    void onOpen(Platform::DialogHandle dialog) override;
    void onMessage(Platform::DialogHandle dialog, std::uint32_t message) override;
    void onTimer(Platform::DialogHandle dialog, std::uint32_t timerId) override;
    void onCommand(Platform::DialogHandle dialog, std::int32_t control) override;

private:
    void advance(Platform::DialogHandle dialog);
    void finish(Platform::DialogHandle dialog);

    Resimulation* resimulation_; // null once it is finished: later messages do nothing
};

} // namespace MVR
