// How a tool changes the choices of a combo in its panel.
#pragma once

#include "core/messages/sdk/message_node.h"
#include "core/util/sdk/dynamic_object.h"
#include "plugins/contract/c_interface.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

/// Changes the choices of a combo, whose component is a node that answers these messages.
class COREComboUpdater final : public Util::DynamicObject,
                               public CInterface::ComboUpdater,
                               public Util::DynamicCreator<COREComboUpdater>,
                               public Util::MessageNode {
public:
    static constexpr std::int32_t kClearChoices = 20300;
    static constexpr std::int32_t kAddChoice = 20301; ///< lParam: a const std::string*

    /// `id` is that of the combo in the panel's layout.
    explicit COREComboUpdater(std::int32_t id);
    /// Does nothing while there is no component.
    void update(std::vector<std::string> choices) override;
    /// `component` isn't owned; it is null until the panel is built.
    void setComponent(Util::MessageNode* component) { component_ = component; }
    [[nodiscard]] std::int32_t getId() const { return id_; }

private:
    Util::MessageNode* component_ = nullptr; // not owned
    std::int32_t id_;
};

} // namespace MVR
