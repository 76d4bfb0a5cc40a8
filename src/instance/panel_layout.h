// What a tool says about its panel, as layout tags.
#pragma once

#include "data/sdk/tag.h"
#include "plugins/contract/c_interface.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

/// A panel in the making.
///
/// 1. begin().
/// 2. Groups, which nest, and controls; each control gets the next id.
/// 3. getTag() and getBindings() are read, then end().
///
/// Outside of begin() and end() nothing is added and no id is used up.
class PanelLayout {
public:
    /// A control that waits for its component.
    struct Binding {
        std::int32_t id;
        void* variable; ///< of the tool; its type depends on the control; null for a button
        CInterface::Callback* callback; ///< of the tool; may be null
    };

    /// The result of an add operation when no panel is being built.
    static constexpr std::int32_t kNoId = -1;

    void begin();
    void beginGroup(const std::string& name, const std::string& tooltip);
    void endGroup();
    void end();

    /// Return the id of the new control.
    std::int32_t addSpinnerInt(const std::string& name, const std::string& tooltip,
                               std::int32_t* variable, std::int32_t minimum, std::int32_t maximum,
                               std::int32_t step, std::int32_t triggerLength,
                               CInterface::Callback* callback);
    std::int32_t addSpinner(const std::string& name, const std::string& tooltip, double* variable,
                            double minimum, double maximum, double step, std::int32_t triggerLength,
                            CInterface::Callback* callback);
    std::int32_t addCheck(const std::string& name, const std::string& tooltip, bool* variable,
                          CInterface::Callback* callback);
    std::int32_t addText(const std::string& name, const std::string& tooltip, std::string* variable,
                         CInterface::Callback* callback);
    std::int32_t addCombo(const std::string& name, const std::string& tooltip,
                          const std::vector<std::string>& choices, std::string* variable,
                          CInterface::Callback* callback);
    std::int32_t addButton(const std::string& name, const std::string& tooltip,
                           CInterface::Callback* callback);

    /// Returns the panel as layout tags; empty while none is being built.
    [[nodiscard]] const Tag& getTag() const { return layout_; }
    /// Returns true if a control was ever added.
    [[nodiscard]] bool hasControls() const { return nextId_ > 0; }
    /// Returns the bindings in order of the calls.
    [[nodiscard]] const std::vector<Binding>& getBindings() const { return bindings_; }

private:
    template <class Number>
    std::int32_t addNumber(const char* keyword, const std::string& name, const std::string& tooltip,
                           Number* variable, Number minimum, Number maximum, Number step,
                           std::int32_t triggerLength, CInterface::Callback* callback);
    std::int32_t append(Tag control, const std::string& tooltip, void* variable,
                        CInterface::Callback* callback);

    Tag layout_;
    std::vector<Tag*> openBodies_; // in layout_, the innermost last
    std::int32_t nextId_ = 0;      // only grows
    std::vector<Binding> bindings_;
};

} // namespace MVR
