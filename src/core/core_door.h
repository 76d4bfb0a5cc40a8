// The implementation of CoreServices for one attachment.
#pragma once

#include "core/services/core_services.h"
#include "core/services/fault_list.h"
#include "core/services/take_notes.h"
#include "core/services/tool_list_changes.h"
#include "dialogs/core_dialogs.h"

#include <cstdint>
#include <optional>
#include <string>

namespace MVR {

class AdaptorManager;
class CoreImplementation;
class RecordManager;

/// Connects the parts of one core.
///
/// 1. It is made before the core, whose constructor calls open().
/// 2. It is destroyed after the core, whose parts use it until their end.
class CoreDoor final : public CoreServices {
public:
    /// `core` isn't owned.
    void open(CoreImplementation& core);

    [[nodiscard]] AdaptorInterface* getAdaptor() const override;
    [[nodiscard]] std::string getUserFolder() const override;
    [[nodiscard]] std::intptr_t getParentWindow() const override;
    [[nodiscard]] CoreInterface& getInterface() const override;
    [[nodiscard]] std::int32_t getStartCountdown() const override;
    [[nodiscard]] bool getAutoExpand() const override;
    [[nodiscard]] InstanceManager& getTree() const override { return *tree_; }
    [[nodiscard]] FaultList& getFaults() override { return faults_; }
    [[nodiscard]] TakeNotes& getTakeNotes() override { return takeNotes_; }
    [[nodiscard]] ToolListChanges& getToolListChanges() override { return toolListChanges_; }
    [[nodiscard]] UserDialogs& getDialogs() override;
    [[nodiscard]] bool isRecording() const override;
    [[nodiscard]] double getTakeDelay() const override;
    void leaveTake(PluginInstance* instance, bool finish) override;

private:
    // Separate pointers, as the core's destructor ends the parts one by one.
    AdaptorManager* adaptor_ = nullptr;
    CoreImplementation* core_ = nullptr; // as the adaptor sees it, and for its settings
    InstanceManager* tree_ = nullptr;
    RecordManager* recorder_ = nullptr;
    FaultList faults_;
    TakeNotes takeNotes_;
    ToolListChanges toolListChanges_{*this};
    std::optional<CoreDialogs> dialogs_;
};

} // namespace MVR
