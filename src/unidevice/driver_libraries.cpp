#include "unidevice/driver_libraries.h"

#include "core/base/folders.h"
#include "core/base/sdk/log.h"
#include "core/util/sdk/singleton.h"
#include "platform/libraries.h"
#include "platform/sdk/files.h"
#include "unidevice/dummy_driver.h"
#include "unidevice/emulated_trinary_device.h"
#include "unidevice/keyboard_device.h"
#include "unidevice/sdk/device_handler.h"

#include <vector>

namespace UniDevice {

namespace {

// The loaded libraries. It creates the device handler first, so that it is the younger of the two
// and the handler still exists when the libraries are freed.
class DriverLibraries : public MVR::Util::Singleton<DriverLibraries> {
public:
    ~DriverLibraries() override { shutDown(); }

    void keep(MVR::Platform::LibraryHandle library) { libraries_.push_back(library); }

    void shutDown() {
        DeviceHandler* handler = DeviceHandler::instance();
        handler->destroyDevices();
        handler->destroyDrivers();
        for (MVR::Platform::LibraryHandle library : libraries_)
            MVR::Platform::freeLibrary(library);
        libraries_.clear();
    }

private:
    friend class MVR::Util::Singleton<DriverLibraries>;
    DriverLibraries() { DeviceHandler::instance(); }

    std::vector<MVR::Platform::LibraryHandle> libraries_;
};

// Returns the library's `loadDevices`, or null if it isn't a driver library of our version.
LoadDevices findEntry(MVR::Platform::LibraryHandle library) {
    const auto getVersion =
        reinterpret_cast<GetDriverVersion>(MVR::Platform::findFunction(library, "getVersion"));
    if (!getVersion || getVersion() != kDriverInterfaceVersion)
        return nullptr;
    return reinterpret_cast<LoadDevices>(MVR::Platform::findFunction(library, "loadDevices"));
}

} // namespace

void startDevices(std::intptr_t moduleHandle, std::intptr_t hostWindow) {
    // Each registers itself; the handler destroys them.
    DriverLibraries::instance();
    new DummyDriver;
    new WINHOOK_KeyboardDevice(moduleHandle);

    DriverLoadInfo info;
    info.moduleHandle = moduleHandle;
    info.hostWindow = hostWindow;
    info.log = MVR::Log::instance();
    const std::string data = MVR::readInstallValue("datapath");
    if (!data.empty()) // else it would be the root of the file system
        loadDriverLibraries(data + "/unidevice/", info);

    new EmulatedTrinaryDevice;
}

void shutDownDevices() {
    DriverLibraries::instance()->shutDown();
}

std::int32_t loadDriverLibraries(const std::string& folder, const DriverLoadInfo& info) {
    namespace Platform = MVR::Platform;
    std::int32_t kept = 0;
    for (const Platform::FoundFile& file :
         Platform::listFiles(folder + "/" + Platform::libraryPattern())) {
        if (!file.isRegular) // opening a pipe would block
            continue;
        const Platform::LibraryHandle library = Platform::loadLibrary(folder + "/" + file.name);
        if (!library)
            continue;
        const LoadDevices loadDevices = findEntry(library);
        if (!loadDevices) {
            Platform::freeLibrary(library);
            continue;
        }
        DriverLibraries::instance()->keep(library);
        loadDevices(DeviceHandler::instance(), &info);
        ++kept;
    }
    return kept;
}

} // namespace UniDevice
