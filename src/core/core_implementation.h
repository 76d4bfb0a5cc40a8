// The core of one attachment, put together from its subsystems.
#pragma once

#include "core/adaptor_manager.h"
#include "core/contract/core_interface.h"
#include "core/extensions/extension_table.h"
#include "core/services/key_hook.h"
#include "core/settings/settings_manager.h"
#include "core/update_manager.h"
#include "dialogs/main_dialog.h"
#include "plugins/instance_manager.h"
#include "recording/record_manager.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

class CoreDoor;

/// The subsystems are constructed and initialised in the order of the bases, with the settings
/// last, and destroyed in reverse order.
class CoreImplementation final : public MainDlg,
                                 public CoreInterface,
                                 public AdaptorManager,
                                 public RecordManager,
                                 public InstanceManager,
                                 public UpdateManager,
                                 public Hooks::KeyEventCallback {
public:
    /// Opens `door`. Neither is owned, and both outlive this object. `adaptor` throws nothing.
    CoreImplementation(AdaptorInterface* adaptor, CoreDoor& door);
    ~CoreImplementation() override;

    /// See UserDialogs::ask(); the parent window isn't used.
    std::int32_t messageBox(std::intptr_t parentWindow, const std::string& text,
                            const std::string& title, std::uint32_t flags);

    /// The countdowns in whole seconds.
    std::int32_t getStartCountdown() const;
    void setStartCountdown(std::int32_t seconds);
    std::int32_t getEndCountdown() const;
    void setEndCountdown(std::int32_t seconds);
    /// Returns true if a take goes on past the end of the host's range.
    bool getAutoExpand() const;
    void setAutoExpand(bool autoExpand);

    // CoreInterface
    void receive(Util::Message& message, bool viaBroadcast) override;
    Tag getConfiguration() override;
    Tag getDetachedConfiguration() override;
    void loadConfiguration(Tag configuration) override;
    void deleteAllInstances() override;
    [[nodiscard]] std::int32_t openMainDialog(std::intptr_t parentWindow) override;
    [[nodiscard]] std::int32_t closeMainDialog() override;
    bool isMainDialogOpen() override;
    void update(double time) override;
    bool isRecording() override;
    void setUnlockedKeys(const std::vector<UnlockedKey>& keys) override;
    [[nodiscard]] std::int32_t startRecording() override;
    std::int32_t stopRecording() override;
    std::int32_t getSlowMotion() override;
    void setSlowMotion(std::int32_t slowMotion) override;
    [[nodiscard]] std::int32_t resimulate(double start, double end) override;
    void setInstanceChecked(std::string name, bool checked) override;
    void setInstanceConfigProfile(std::string name, std::string profile) override;
    Util::MessageNode* addProperty(std::int32_t id, double defaultValue) override;
    Util::MessageNode* addProperty(std::int32_t id, std::string defaultValue) override;
    Util::MessageNode* addProperty(std::int32_t id, std::int32_t defaultValue) override;
    Util::MessageNode* addProperty(std::int32_t id, bool defaultValue) override;
    bool getProperty(std::int32_t id, void* value) override;
    bool setProperty(std::int32_t id, const void* value) override;
    std::intptr_t extend(std::int32_t id, std::intptr_t data) override;

    // Hooks::KeyEventCallback
    void onKey(std::int32_t virtualKey, bool pressed, bool ctrl, bool alt, bool shift) override;

private:
    void readRecent();
    void writeRecent() const;

    CoreDoor& door_;
    ExtensionTable extensions_;
    SettingsManager settings_;
};

} // namespace MVR
