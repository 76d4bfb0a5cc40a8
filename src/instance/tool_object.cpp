#include "instance/tool_object.h"

#include "core/base/error_codes.h"
#include "core/base/sdk/log.h"
#include "core/services/core_services.h"
#include "core/services/take_notes.h"
#include "plugins/contract/c_camera_plugin.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/libraries/library.h"
#include "plugins/libraries/plugin.h"

#include <utility>

namespace MVR {

ToolObject::ToolObject(CoreServices& services, Plugin& plugin, const std::string& name)
    : services_(services), plugin_(plugin), name_(name) {}

ToolObject::~ToolObject() {
    destroy();
    for (Frame* frame = innermost_; frame != nullptr; frame = frame->outer)
        frame->isAlive = false;
}

std::string ToolObject::describe() const {
    return "The tool " + name_ + " (" + plugin_.getName() + " of " +
           plugin_.getLibrary().getPath() + ")";
}

namespace {

/// Names a call of extend() for the log.
const char* nameOfExtension(std::int32_t id) {
    switch (id) {
    case ToolExtension::kVirtualControl:
        return "extend(40)";
    case ToolExtension::kAfterCreate:
        return "extend(42)";
    case ToolExtension::kGetCustomData:
        return "extend(44)";
    case ToolExtension::kSetCustomData:
        return "extend(45)";
    case ToolExtension::kDataPath:
        return "extend(48)";
    case ToolExtension::kSelectObject:
        return "extend(49)";
    case ToolExtension::kDataFolder:
        return "extend(52)";
    case ToolExtension::kConfigProfiles:
        return "extend(53)";
    case ToolExtension::kInputProfiles:
        return "extend(54)";
    }
    return "extend";
}

} // namespace

template <class Call>
bool ToolObject::run(const char* operation, const Call& call, bool isPolled) {
    Frame frame{innermost_, snapshots_.getNext(), true};
    innermost_ = &frame;
    const auto who = [&] { return frame.isAlive ? describe() : "A tool that ended meanwhile"; };
    const bool isWhole = Border::call(who, operation, call);
    if (!frame.isAlive)
        return isWhole;
    innermost_ = frame.outer;
    if (!snapshots_.isEmpty())
        endSnapshots(operation, frame.firstSnapshot);
    if (!isWhole && services_.isRecording() && !isSittingOut_)
        services_.getTakeNotes().add(
            {CoreTakeNote::kToolFault, name_, "", 0,
             describe() + " failed in " + operation + " and sat out the rest; the log has more"});
    if (!isWhole && (isPolled || services_.isRecording()))
        isSittingOut_ = true;
    return isWhole;
}

void ToolObject::endSnapshots(const char* operation, std::uint64_t first) {
    std::string ended;
    (void)Border::callNode("the end of a snapshot", [&] { ended = snapshots_.endFrom(first); });
    if (!ended.empty() && !std::exchange(isSnapshotTold_, services_.isRecording()))
        Log(Log::Error)
            .write(describe() + " gave nothing back in " + operation + ", so " + ended +
                   " is ended");
}

void ToolObject::make(CInterface& access) {
    CCamera::CreateParam param;
    param.name = name_;
    (void)run("create of its kind",
              [&] { code_ = CCamera::createCode(plugin_.getDescriptor(), &param); });
    if (code_ != nullptr)
        code_->setInterface(&access);
}

void ToolObject::destroy() {
    if (CCamera* const code = std::exchange(code_, nullptr))
        (void)run(
            "destroy", [code] { code->destroy(); });
}

template <class Call>
std::int32_t ToolObject::runForCode(const char* operation, const Call& call) {
    std::int32_t code = 0;
    return run(operation, [&] { code = call(); }) ? code : reportCode(Codes::kException);
}

std::int32_t ToolObject::init() {
    return runForCode(
        "init", [code = code_] { return code->init(); });
}

std::int32_t ToolObject::create() {
    return runForCode(
        "create", [code = code_] { return code->create(); });
}

std::int32_t ToolObject::load() {
    return runForCode(
        "load", [code = code_] { return code->load(); });
}

std::int32_t ToolObject::save() {
    return runForCode(
        "save", [code = code_] { return code->save(); });
}

bool ToolObject::startRecording(double time) {
    isSnapshotTold_ = false;
    return run("startRecording", [&] { code_->startRecording(time); });
}

void ToolObject::record(double time) {
    (void)run(
        "record", [&] { code_->record(time); });
}

void ToolObject::finishRecording(double time) {
    (void)run(
        "finishRecording", [&] { code_->finishRecording(time); });
}

void ToolObject::setTime(double time) {
    (void)run(
        "setTime", [&] { code_->setTime(time); });
}

std::intptr_t ToolObject::extend(std::int32_t id, std::intptr_t data) {
    std::intptr_t result = 0;
    const bool isPolled = id == ToolExtension::kVirtualControl; // again at the next frame
    (void)run(
        nameOfExtension(id), [&] { result = code_->extend(id, data); }, isPolled);
    return result;
}

bool ToolObject::supportsExtension(std::int32_t id) {
    bool isSupported = false;
    (void)run("supportsExtension", [&] { isSupported = code_->supportsExtension(id); });
    return isSupported;
}

} // namespace MVR
