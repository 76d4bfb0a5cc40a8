#include "core/core_door.h"

#include "core/core_implementation.h"

namespace MVR {

void CoreDoor::open(CoreImplementation& core) {
    adaptor_ = &core;
    core_ = &core;
    tree_ = &core;
    recorder_ = &core;
    dialogs_.emplace(*this, core);
}

AdaptorInterface* CoreDoor::getAdaptor() const {
    return adaptor_->getAdaptor();
}

std::string CoreDoor::getUserFolder() const {
    return adaptor_->getUserFolder();
}

std::intptr_t CoreDoor::getParentWindow() const {
    return adaptor_->getParentWindow();
}

CoreInterface& CoreDoor::getInterface() const {
    return *core_;
}

std::int32_t CoreDoor::getStartCountdown() const {
    return core_->getStartCountdown();
}

bool CoreDoor::getAutoExpand() const {
    return core_->getAutoExpand();
}

UserDialogs& CoreDoor::getDialogs() {
    return *dialogs_;
}

bool CoreDoor::isRecording() const {
    return recorder_->isRecording();
}

double CoreDoor::getTakeDelay() const {
    return recorder_->getDelay();
}

void CoreDoor::leaveTake(PluginInstance* instance, bool finish) {
    recorder_->dropInstance(instance, finish);
}

} // namespace MVR
