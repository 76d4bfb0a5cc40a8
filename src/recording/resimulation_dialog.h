/// \file
/// The modal dialog that shows how far a resimulation is, and drives it.
#pragma once

#include "platform/dialogs.h"

#include <cstdint>

namespace MVR {

class RecordManager;

/// Runs a resimulation in slices, so that the message loop and the Stop button stay alive.
///
/// 1. Construct it for a record manager that has prepared a resimulation.
/// 2. run() returns when all frames are done or the user pressed Stop. Either way the resimulation
///    has been finished.
class ResimulationDialog final : public Platform::DialogLogic {
public:
    /// `manager` must outlive run().
    explicit ResimulationDialog(RecordManager* manager) : manager_(manager) {}

    void run(Platform::WindowHandle owner);

    void onOpen(Platform::DialogHandle dialog) override;
    void onMessage(Platform::DialogHandle dialog, std::uint32_t message) override;
    void onTimer(Platform::DialogHandle dialog, std::uint32_t timerId) override;
    void onCommand(Platform::DialogHandle dialog, std::int32_t control) override;

private:
    void advance(Platform::DialogHandle dialog);
    void finish(Platform::DialogHandle dialog);

    RecordManager* manager_; // null once the resimulation is finished: later messages do nothing
};

} // namespace MVR
