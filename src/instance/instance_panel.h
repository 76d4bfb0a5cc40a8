// The panel of one placed tool.
#pragma once

#include "core/util/sdk/dynamic_object.h"
#include "data/kept_elements.h"
#include "data/sdk/tag.h"
#include "instance/combo_updater.h"
#include "instance/panel_layout.h"

#include <string>
#include <vector>

namespace MVR {

/// What a tool described as its panel, and the values in it as a profile.
///
/// The dialog around a panel is built from the frame that all tools share. There is no such frame
/// yet, and so no dialog: the values of a profile are kept as they were read, until another profile
/// is applied.
class InstancePanel {
public:
    /// Returns the unfinished layout, for adding groups and all controls except combos.
    [[nodiscard]] PanelLayout& getLayout() { return layout_; }
    /// Adds a combo. Returns the object that changes its choices, which lives as long as the panel,
    /// or null if no panel is being described.
    CInterface::ComboUpdater* addCombo(const std::string& label, const std::string& tooltip,
                                       const std::vector<std::string>& choices,
                                       std::string* variable, CInterface::Callback* callback);
    /// The description is complete.
    void finish();
    /// Destroys what the panel owns, the last first.
    void clear();

    /// Returns true if the tool ever described a control.
    [[nodiscard]] bool hasControls() const { return layout_.hasControls(); }

    /// Returns a tag "profile" of the values.
    [[nodiscard]] Tag describe(const std::string& profileName) const;
    /// Replaces the values by those that `profile` has; an empty tag changes nothing.
    void apply(const Tag& profile);

private:
    PanelLayout layout_;
    KeptElements values_;
    std::vector<Util::Owned<COREComboUpdater>> comboUpdaters_;
};

} // namespace MVR
