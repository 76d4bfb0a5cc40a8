// What the user is asked and shown, for the floors below the dialogs.
#pragma once

#include "platform/choosers.h"

#include <cstdint>
#include <string>

namespace MVR {

class InstanceReference;

/// The dialogs of one attachment. Host thread only.
class UserDialogs {
public:
    /// Shows a message box and returns the user's answer; with the setting "Silent mode" shows
    /// nothing and returns the answer of the default button. `flags` and answers are those of
    /// "platform/choosers.h".
    virtual std::int32_t ask(const std::string& text, const std::string& title,
                             std::uint32_t flags) = 0;
    /// Return the full path of a model's file to read or to write; "" if the user cancelled.
    [[nodiscard]] virtual std::string askModelToOpen() = 0;
    [[nodiscard]] virtual std::string askModelToSave() = 0;
    /// Shows the context menu of a tool and does what the user chooses, which may destroy the tool.
    virtual void openMenu(InstanceReference& tool) = 0;
    /// Returns the window that a dialog of the core belongs to; 0 while there is none.
    [[nodiscard]] virtual Platform::WindowHandle getWindow() const = 0;

protected:
    ~UserDialogs() = default;
};

} // namespace MVR
