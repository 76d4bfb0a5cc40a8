#include "core/entry.h"

#include "core/base/border.h"
#include "core/base/error_codes.h"
#include "core/base/folders.h"
#include "core/base/sdk/log.h"
#include "core/core_door.h"
#include "core/core_implementation.h"
#include "core/guarded_adaptor.h"
#include "core/services/key_hook.h"
#include "core/util/thread_check.h"
#include "instance/plugin_instance.h"
#include "platform/event_pump.h"
#include "platform/keyboard_hook.h"
#include "platform/sdk/files.h"
#include "plugins/libraries/core_library.h"
#include "plugins/libraries/instance_maker.h"
#include "plugins/libraries/library_manager.h"
#include "recording/countdown_window.h"
#include "unidevice/driver_libraries.h"

namespace MVR {

namespace {

// Plain storage: the process may run its destructors before the library's unload.
Platform::LibraryHandle ownModule = nullptr;
bool devicesStarted = false; // once per process: a second attachment has no device drivers

/// What exists from attach to detach.
struct Attachment {
    explicit Attachment(AdaptorInterface& host) : adaptor(host), core(&adaptor, door) {}

    GuardedAdaptor adaptor;
    CoreDoor door;
    CoreImplementation core;
};
Attachment* attachment = nullptr; // owned; freed by detachCore
bool isAttaching = false;         // the adaptor is being called before there is an attachment
bool isDetaching = false;

class ToolMaker final : public InstanceMaker {
public:
    PluginInstance* makeInstance(CoreImplementation* core, Plugin* plugin,
                                 const std::string& name) override {
        return new PluginInstance(core, core->AdaptorManager::getServices(), plugin, name);
    }
};
ToolMaker toolMaker;

void openLogFile() {
    std::string replaced;
    const std::string documents = resolveDocumentsPath(&replaced);
    if (documents.empty())
        return;
    const std::string folder = documents + R"(\data\Core\)";
    if (Platform::createFolders(folder))
        Log::setFile(folder + R"(\core.log)");
    if (!replaced.empty())
        Log(Log::Warning).write(replaced);
}

void loadPlugins() {
    Log log("Loading plugins", Log::Notice);
    CoreLibrary::instance()->addBuiltInPlugins();
    LibraryManager::instance()->setMaker(toolMaker);
    LibraryManager::instance()->loadLibraries();
}

bool isRightVersion(AdaptorInterface& adaptor) {
    if (adaptor.getVersion() == kCoreVersion)
        return true;
    Log log(Log::Error);
    log.write("version mismatch trying to attach to CORE");
    log.write("CORE version", kCoreVersion, Log::OwnLevel);
    log.write("Adaptor version", adaptor.getVersion(), Log::OwnLevel);
    return false;
}

void startDevicesOnce(AdaptorInterface& adaptor) {
    if (devicesStarted)
        return;
    Log log("Initializing UniDevice", Log::Notice);
    devicesStarted = true;
    UniDevice::startDevices(reinterpret_cast<std::intptr_t>(ownModule), adaptor.getHostWindow());
}

} // namespace

void libraryLoaded(Platform::LibraryHandle module) {
    ownModule = module;
    openLogFile();
    Log::setThreshold(Log::Notice);
    Log log("Initializing CORE", Log::Notice);
    if (!registerCountdownWindowClass())
        log.write("Unable to register the countdown window", Log::Error);
    {
        Log codes("registering common error codes", Log::Notice);
        registerCommonCodes();
    }
    loadPlugins();
}

CoreInterface* attachAdaptor(AdaptorInterface* host) {
    if (host == nullptr)
        return nullptr;
    GuardedAdaptor adaptor(*host);
    if (!isRightVersion(adaptor))
        return nullptr;
    if (attachment != nullptr || isAttaching) {
        Log(Log::Error).write("another adaptor is attached to CORE");
        return nullptr;
    }
    isAttaching = true;
    Util::bindHostThread();
    Log log("Linking adaptor to CORE and creating CORE interface", Log::Notice);
    adaptor.setErrorCode(ErrorCode::instance());
    adaptor.setLog(Log::instance());
    startDevicesOnce(adaptor);
    Hooks::attachKeyHook();
    attachment = new Attachment(*host);
    isAttaching = false;
    return &attachment->core;
}

std::int32_t detachCore(CoreInterface* core) {
    CoreImplementation* const attached = attachment != nullptr ? &attachment->core : nullptr;
    if (core != nullptr && core == attached && (Border::isCallOpen() || isDetaching)) {
        // What detaching destroys is on the stack.
        return reportCode(Codes::kDetachNotNow);
    }
    Hooks::detachKeyHook();
    Log log("Unlinking adaptor from CORE and deleting CORE interface", Log::Notice);
    if (core == nullptr)
        return 0;
    if (core != attached) {
        log.write("this CORE interface isn't attached", Log::Error);
        return 0;
    }
    isDetaching = true;
    AdaptorInterface* const adaptor = attached->getAdaptor();
    if (attached->isRecording()) // what was performed so far is kept in the host
        attached->stopRecording();
    attached->destroyRoot();
    adaptor->detachNotify();
    if (attached->isRecording()) // the host began one meanwhile
        attached->stopRecording();
    adaptor->releaseErrorCode();
    adaptor->releaseLog();
    LibraryManager::instance()->destroyInstances(attached);
    UniDevice::shutDownDevices();
    delete attachment;
    attachment = nullptr;
    isDetaching = false;
    Util::unbindHostThread();
    return 0;
}

std::int32_t pumpHostEvents(HostEvent* eventOrNull) {
    if (eventOrNull != nullptr && eventOrNull->size >= sizeof(HostEvent))
        eventOrNull->swallowed =
            Platform::deliverKey(eventOrNull->virtualKey, eventOrNull->pressed, eventOrNull->alt);
    return Platform::runDueEvents();
}

void libraryUnloading() {
    Util::unbindHostThread(); // a host that forgot to detach may unload on any thread
    {
        Log log("Shutting down CORE", Log::Notice);
        if (attachment != nullptr) {
            log.write("an adaptor is still attached to CORE", Log::Error);
            Log::closeFile();
            return;
        }
        LibraryManager::instance()->destroyLibraries();
        log.write("Shutdown Complete");
        if (!unregisterCountdownWindowClass())
            log.write("Unable to unregister the countdown window", Log::Error);
    }
    Hooks::releaseKeyHook();
    Util::SingletonCollector::destroyAll();
    devicesStarted = false;
    ownModule = nullptr;
    Platform::releasePlatform();
}

} // namespace MVR
