// The main dialog: the tree of tools, the record and resimulate buttons.
#pragma once

#include "core/messages/sdk/message.h"
#include "core/services/core_sub_system.h"
#include "platform/windows.h"

#include <cstdint>

namespace MVR {

/// The main dialog of one attachment. Without a layout there is no dialog, and the core works
/// without one.
class MainDlg : public CoreSubSystem {
public:
    MainDlg(CoreImplementation* core, CoreServices* services);
    ~MainDlg() override;

    /// Returns 0, or the code of "NOMAINDLGCOMPONENT" if there is no layout.
    [[nodiscard]] std::int32_t open(Platform::WindowHandle parent);
    /// Returns true while the dialog's window exists.
    [[nodiscard]] bool isOpen() const { return Platform::isWindow(window_); }
    /// Returns the dialog's window; 0 while it isn't open.
    [[nodiscard]] Platform::WindowHandle getWindow() const { return window_; }

    /// Carries out what the user started; the core passes its messages on to this.
    void receive(Util::Message& message, bool viaBroadcast);

private:
    void onPressed(std::uint32_t control);

    Platform::WindowHandle window_ = 0;
};

} // namespace MVR
