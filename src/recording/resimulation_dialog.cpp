#include "recording/resimulation_dialog.h"

#include "platform/dialog_templates.h"
#include "recording/resimulation.h"

namespace MVR {

namespace {

using namespace Platform::ResimulationResource;

constexpr std::uint32_t kAdvanceMessage = 1480;
constexpr std::uint32_t kSliceTimer = 1;
constexpr std::uint32_t kSlicePauseMs = 1; // back to the message loop, then on at once
constexpr std::int32_t kFull = 100;        // the bar's upper end

} // namespace

void ResimulationDialog::run(Platform::WindowHandle owner) {
    (void)Platform::runModalDialog(kDialog, owner, *this);
    // The dialog may be missing, or have been ended by the desktop.
    if (resimulation_ != nullptr)
        resimulation_->finish();
    resimulation_ = nullptr;
}

void ResimulationDialog::onOpen(Platform::DialogHandle dialog) {
    Platform::setProgressRange(dialog, kProgressBar, 0, kFull);
    Platform::centreOnOwner(dialog);
    Platform::show(dialog);
    Platform::postMessage(dialog, kAdvanceMessage);
}

void ResimulationDialog::onMessage(Platform::DialogHandle dialog, std::uint32_t message) {
    if (message == kAdvanceMessage)
        advance(dialog);
}

void ResimulationDialog::onTimer(Platform::DialogHandle dialog, std::uint32_t) {
    advance(dialog);
}

void ResimulationDialog::onCommand(Platform::DialogHandle dialog, std::int32_t control) {
    if (control == kStopButton)
        finish(dialog);
}

void ResimulationDialog::advance(Platform::DialogHandle dialog) {
    Platform::killDialogTimer(dialog, kSliceTimer);
    if (resimulation_ == nullptr)
        return;
    Platform::setProgressPosition(
        dialog, kProgressBar,
        static_cast<std::int32_t>(resimulation_->getProgress() * static_cast<float>(kFull)));
    const bool moreRemains = resimulation_->runSlice();
    if (resimulation_ == nullptr) // a tool's own message loop let the button through
        return;
    if (moreRemains) {
        Platform::setDialogTimer(dialog, kSliceTimer, kSlicePauseMs);
        return;
    }
    Platform::setProgressPosition(dialog, kProgressBar, kFull);
    finish(dialog);
}

void ResimulationDialog::finish(Platform::DialogHandle dialog) {
    Platform::killDialogTimer(dialog, kSliceTimer);
    Resimulation* const resimulation = resimulation_;
    resimulation_ = nullptr;
    if (resimulation != nullptr)
        resimulation->finish();
    Platform::endDialog(dialog, 0);
}

} // namespace MVR
