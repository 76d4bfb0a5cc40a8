#include "instance/combo_updater.h"

namespace MVR {

COREComboUpdater::COREComboUpdater(std::int32_t id) : MessageNode("COREComboUpdater"), id_(id) {}

void COREComboUpdater::update(std::vector<std::string> choices) {
    if (component_ == nullptr)
        return;
    Util::Message clear(kClearChoices);
    (void)send(component_, clear);
    for (const std::string& choice : choices) {
        Util::Message add(kAddChoice, static_cast<std::uint32_t>(-1),
                          reinterpret_cast<std::intptr_t>(&choice));
        (void)send(component_, add);
    }
}

} // namespace MVR
