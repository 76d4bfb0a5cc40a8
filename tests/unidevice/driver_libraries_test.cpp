#include "unidevice/driver_libraries.h"

#include "core/base/sdk/log.h"
#include "core/util/sdk/singleton.h"
#include "platform/temporary_folder.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device.h"
#include "unidevice/sdk/device_handler.h"
#include "unidevice/sdk/driver.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

namespace {

using namespace UniDevice;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::string mappedFiles() {
    std::stringstream text;
    text << std::ifstream("/proc/self/maps").rdbuf();
    return text.str();
}

struct DriverLibrariesTest : testing::Test {
    DriverLibrariesTest() {
        for (const auto& library : std::filesystem::directory_iterator(FAKE_DRIVER_FOLDER)) {
            std::filesystem::create_directories(unidevice());
            std::filesystem::copy(library, unidevice() + library.path().filename().string());
        }
        folder.add("data/unidevice/a_text.so", "not a library");
        folder.add("data/unidevice/b_folder.so/file");
        folder.add("data/unidevice/readme.txt", "none of ours");
    }
    ~DriverLibrariesTest() override { MVR::Util::SingletonCollector::destroyAll(); }

    std::string unidevice() const { return folder.path + "data/unidevice/"; }

    template <class Named>
    static std::vector<std::string> namesOf(const std::vector<Named*>& list) {
        std::vector<std::string> names;
        for (const Named* each : list)
            names.push_back(each->name);
        return names;
    }
    static std::vector<std::string> deviceNames() {
        return namesOf(DeviceHandler::instance()->devices);
    }

    // Name, library and fault of each.
    static std::vector<std::string> drivers() {
        std::vector<std::string> texts;
        for (const MVR::CoreDriver& each : listDrivers())
            texts.push_back(each.name + (each.name.empty() ? "" : " ") + each.library + " " +
                            each.fault);
        return texts;
    }

    TemporaryFolder folder;
};

TEST_F(DriverLibrariesTest, RefusedLibrariesAreSkippedAndTheRestLoads) {
    DriverLoadInfo info;
    info.log = MVR::Log::instance();
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(loadDriverLibraries(unidevice(), info), 1);
        EXPECT_THAT(deviceNames(), ElementsAre("Fake"));
        EXPECT_THAT(mappedFiles(), HasSubstr("driver_sound.so"));
        EXPECT_THAT(mappedFiles(), Not(HasSubstr("driver_version119.so")));
        EXPECT_THAT(mappedFiles(), Not(HasSubstr("driver_no_")));
        const std::string path = unidevice();
        const std::string own = path + "driver_sound.so ";
        const std::string foreign = "it isn't a driver library of version 120";
        EXPECT_THAT(drivers(),
                    ElementsAre("fake " + own, own + "half of it is missing",
                                testing::StartsWith(path + "a_text.so it can't be loaded: "),
                                path + "driver_no_load.so " + foreign,
                                path + "driver_no_version.so " + foreign,
                                path + "driver_version119.so " + foreign));
        for (const char* fault : {"polled 1", "polled 2", ""}) {
            DeviceHandler::instance()->update();
            EXPECT_EQ(drivers().front(), "fake " + own + fault);
        }
        shutDownDevices();
        EXPECT_THAT(drivers(), ElementsAre());
        EXPECT_THAT(deviceNames(), ElementsAre());
        EXPECT_THAT(mappedFiles(), Not(HasSubstr("driver_sound.so")))
            << "freed, and can be loaded again";
    }
    EXPECT_EQ(loadDriverLibraries(folder.path + "missing", info), 0);
    EXPECT_EQ(MVR::Log::getText().find("(ERROR)"), std::string::npos);
    EXPECT_THAT(MVR::Log::getText(), HasSubstr("(WARNING): fake: polled 2"));
}

TEST_F(DriverLibrariesTest, StartsTheBuiltInDevicesAroundThoseOfTheLibraries) {
    const std::string registry = folder.add(
        "registry.ini", "[SOFTWARE\\Oskelworks\\Lensetta]\ndatapath=" + folder.path + "data\n");
    setenv("MIRVANE_REGISTRY", registry.c_str(), 1);
    startDevices(0x100000, 0x20);
    unsetenv("MIRVANE_REGISTRY");
    EXPECT_THAT(deviceNames(), ElementsAre("Keyboard", "Fake", "TrinaryEmulator"));
    EXPECT_THAT(namesOf(DeviceHandler::instance()->drivers), ElementsAre("dummydriver", "fake"));
    Device* fake = DeviceHandler::instance()->findDevice("Fake", 0);
    ASSERT_NE(fake, nullptr);
    EXPECT_EQ(fake->control(0)->value, 0x100000 + 0x20 + 1203);
    EXPECT_THAT(MVR::Log::getText(), HasSubstr("(NOTICE): fake driver speaking"));

    // A host that ends without detaching.
    MVR::Util::SingletonCollector::destroyAll();
    EXPECT_THAT(mappedFiles(), Not(HasSubstr("driver_sound.so")));
    EXPECT_THAT(deviceNames(), ElementsAre());
}

} // namespace
