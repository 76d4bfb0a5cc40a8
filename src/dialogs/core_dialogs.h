// What the user is asked and shown.
#pragma once

#include "core/services/user_dialogs.h"

#include <cstdint>
#include <string>

namespace MVR {

class CoreServices;
class MainDlg;

/// The dialogs of one attachment.
class CoreDialogs final : public UserDialogs {
public:
    /// Neither is owned; both outlive this object.
    CoreDialogs(CoreServices& services, const MainDlg& mainDialog)
        : services_(services), mainDialog_(mainDialog) {}

    std::int32_t ask(const std::string& text, const std::string& title,
                     std::uint32_t flags) override;
    [[nodiscard]] std::string askModelToOpen() override;
    [[nodiscard]] std::string askModelToSave() override;
    void openMenu(InstanceReference& tool) override;
    /// Returns the main dialog's window.
    [[nodiscard]] Platform::WindowHandle getWindow() const override;

private:
    CoreServices& services_;
    const MainDlg& mainDialog_;
};

} // namespace MVR
