#include "core/services/core_sub_system.h"

#include "platform/choosers.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace MVR {

namespace Core {

bool subsystemInitialized = false;

} // namespace Core

namespace {

// Made with the first entry and freed with the last.
std::vector<CoreSubSystem*>* subsystems = nullptr;

} // namespace

CoreSubSystem::CoreSubSystem(CoreImplementation* core, CoreServices* services)
    : core_(core), services_(services) {
    if (core_ == nullptr || Core::subsystemInitialized)
        return;
    if (subsystems == nullptr)
        subsystems = new std::vector<CoreSubSystem*>;
    subsystems->push_back(this);
}

CoreSubSystem::~CoreSubSystem() {
    if (subsystems == nullptr)
        return;
    subsystems->erase(std::remove(subsystems->begin(), subsystems->end(), this), subsystems->end());
    if (!subsystems->empty())
        return;
    delete subsystems;
    subsystems = nullptr;
    Core::subsystemInitialized = false;
}

void CoreSubSystem::initialize() {}

CoreImplementation* CoreSubSystem::getCore() const {
    if (core_ != nullptr && !Core::subsystemInitialized)
        Platform::messageBox(0, "ERROR: Using CORE pointer before being correctly initialized!", "",
                             Platform::kButtonsOk);
    return core_;
}

void CoreSubSystem::initializeAll() {
    Core::subsystemInitialized = true;
    for (std::size_t index = 0; subsystems != nullptr && index < subsystems->size(); ++index)
        (*subsystems)[index]->initialize();
}

} // namespace MVR
