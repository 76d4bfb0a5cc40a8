#include "unidevice/driver_libraries.h"

#include "core/base/border.h"
#include "core/base/folders.h"
#include "core/base/sdk/log.h"
#include "core/util/sdk/singleton.h"
#include "platform/libraries.h"
#include "platform/sdk/files.h"
#include "unidevice/dummy_driver.h"
#include "unidevice/emulated_trinary_device.h"
#include "unidevice/keyboard_device.h"
#include "unidevice/sdk/device_handler.h"
#include "unidevice/sdk/driver.h"
#include "unidevice/sdk/driver_faults.h"

#include <algorithm>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace UniDevice {

namespace {

// A loaded library, with what it told of its drivers.
class DriverLibrary final : public DriverFaults {
public:
    DriverLibrary(MVR::Platform::LibraryHandle handle, std::string path)
        : handle_(handle), path_(std::move(path)) {}
    DriverLibrary(const DriverLibrary&) = delete;
    DriverLibrary& operator=(const DriverLibrary&) = delete;
    ~DriverLibrary() { MVR::Platform::freeLibrary(handle_); }

    void load(LoadDevices loadDevices, DriverLoadInfo info) {
        DeviceHandler* const handler = DeviceHandler::instance();
        const std::vector<Driver*> before = handler->drivers;
        info.faults = this;
        if (!MVR::Border::call([this] { return "The library " + path_; }, "loadDevices",
                               [&] { loadDevices(handler, &info); }))
            setFault(nullptr, "it threw an exception while it loaded its devices");
        for (const Driver* driver : handler->drivers) {
            if (std::find(before.begin(), before.end(), driver) == before.end()) {
                faults_[driver]; // unless it has told one already
                hasDriver_ = true;
            }
        }
    }

    void setFault(const Driver* driver, std::string fault) override {
        std::string& present = faults_[driver];
        if (fault != present && !fault.empty()) {
            MVR::Log(MVR::Log::Warning)
                .write((driver != nullptr ? driver->name : path_) + ": " + fault);
        }
        present = std::move(fault);
    }

    [[nodiscard]] bool hasDriver(const Driver& driver) const { return faults_.count(&driver) > 0; }
    [[nodiscard]] const std::string& getPath() const { return path_; }

    // Fills in library and fault if `driver` is one of this library.
    void describe(const Driver* driver, MVR::CoreDriver& out) const {
        if (const auto found = faults_.find(driver); found != faults_.end()) {
            out.library = path_;
            out.fault = found->second;
        }
    }

    void describeWhole(std::vector<MVR::CoreDriver>& out) const {
        MVR::CoreDriver whole{"", path_, ""};
        describe(nullptr, whole);
        if (!hasDriver_ || !whole.fault.empty())
            out.push_back(std::move(whole));
    }

private:
    MVR::Platform::LibraryHandle handle_;
    std::string path_;
    std::map<const Driver*, std::string> faults_; // of each driver; of the whole under null
    bool hasDriver_ = false;
};

// The loaded libraries. It creates the device handler first, so that it is the younger of the two
// and the handler still exists when the libraries are freed.
class DriverLibraries : public MVR::Util::Singleton<DriverLibraries> {
public:
    ~DriverLibraries() override {
        shutDown();
        DeviceHandler::instance()->describeDriver = nullptr;
    }

    void load(MVR::Platform::LibraryHandle handle, const std::string& path, LoadDevices loadDevices,
              const DriverLoadInfo& info) {
        libraries_.push_back(std::make_unique<DriverLibrary>(handle, path));
        libraries_.back()->load(loadDevices, info);
    }
    void refuse(const std::string& path, const std::string& why) {
        refused_.push_back({"", path, why});
    }

    void addBuiltIn(const Device* device) { builtIn_.push_back(device); }
    [[nodiscard]] bool isBuiltIn(const Device* device) const {
        return std::find(builtIn_.begin(), builtIn_.end(), device) != builtIn_.end();
    }

    [[nodiscard]] std::string describe(const Driver& driver) const {
        std::string text = "The driver " + driver.name;
        for (const auto& library : libraries_)
            if (library->hasDriver(driver))
                text += " of " + library->getPath();
        return text;
    }

    [[nodiscard]] std::vector<MVR::CoreDriver> list() const {
        std::vector<MVR::CoreDriver> list;
        for (const Driver* driver : DeviceHandler::instance()->drivers) {
            MVR::CoreDriver& entry = list.emplace_back();
            entry.name = driver->name;
            for (const auto& library : libraries_)
                library->describe(driver, entry);
        }
        for (const auto& library : libraries_)
            library->describeWhole(list);
        list.insert(list.end(), refused_.begin(), refused_.end());
        return list;
    }

    void shutDown() {
        DeviceHandler* handler = DeviceHandler::instance();
        handler->destroyDevices();
        handler->destroyDrivers();
        libraries_.clear();
        refused_.clear();
        builtIn_.clear();
    }

private:
    friend class MVR::Util::Singleton<DriverLibraries>;
    DriverLibraries() {
        DeviceHandler::instance()->describeDriver = [](const Driver& driver) {
            return DriverLibraries::instance()->describe(driver);
        };
    }

    std::vector<std::unique_ptr<DriverLibrary>> libraries_;
    std::vector<MVR::CoreDriver> refused_;
    std::vector<const Device*> builtIn_; // the handler's
};

// Returns the library's `loadDevices`, or null if it isn't a driver library of our version.
LoadDevices findEntry(MVR::Platform::LibraryHandle library, const std::string& path) {
    const auto getVersion =
        reinterpret_cast<GetDriverVersion>(MVR::Platform::findFunction(library, "getVersion"));
    const auto who = [&path] { return "The library " + path; };
    if (!getVersion ||
        MVR::Border::ask(who, "getVersion", std::int32_t{0}, getVersion) != kDriverInterfaceVersion)
        return nullptr;
    return reinterpret_cast<LoadDevices>(MVR::Platform::findFunction(library, "loadDevices"));
}

} // namespace

void startDevices(std::intptr_t moduleHandle, std::intptr_t hostWindow) {
    // Each registers itself; the handler destroys them.
    DriverLibraries& libraries = *DriverLibraries::instance();
    new DummyDriver;
    libraries.addBuiltIn(new WINHOOK_KeyboardDevice(moduleHandle));

    DriverLoadInfo info;
    info.moduleHandle = moduleHandle;
    info.hostWindow = hostWindow;
    info.log = MVR::Log::instance();
    const std::string data = MVR::readInstallValue("datapath");
    if (!data.empty()) // else it would be the root of the file system
        loadDriverLibraries(data + "/unidevice", info);

    libraries.addBuiltIn(new EmulatedTrinaryDevice);
}

void shutDownDevices() {
    DriverLibraries::instance()->shutDown();
}

std::int32_t loadDriverLibraries(const std::string& folder, const DriverLoadInfo& info) {
    namespace Platform = MVR::Platform;
    DriverLibraries& libraries = *DriverLibraries::instance();
    std::int32_t kept = 0;
    for (const Platform::FoundFile& file :
         Platform::listFiles(folder + "/" + Platform::libraryPattern())) {
        if (!file.isRegular) // opening a pipe would block
            continue;
        const std::string path = Platform::foldPath(folder + "/" + file.name);
        const Platform::LibraryHandle library = Platform::loadLibrary(path);
        if (!library) {
            libraries.refuse(path, "it can't be loaded: " + Platform::lastLibraryError());
            continue;
        }
        const LoadDevices loadDevices = findEntry(library, path);
        if (!loadDevices) {
            Platform::freeLibrary(library);
            libraries.refuse(path, "it isn't a driver library of version " +
                                       std::to_string(kDriverInterfaceVersion));
            continue;
        }
        libraries.load(library, path, loadDevices, info);
        ++kept;
    }
    return kept;
}

std::vector<MVR::CoreDriver> listDrivers() {
    return DriverLibraries::instance()->list();
}

bool isBuiltIn(const Device& device) {
    return DriverLibraries::instance()->isBuiltIn(&device);
}

} // namespace UniDevice
