#include "osc_device.h"

#include "udp_sender.h"

#include "core/base/sdk/log.h"
#include "core/util/sdk/singleton.h"
#include "data/sdk/tag.h"
#include "platform/temporary_folder.h"
#include "unidevice/driver_libraries.h"
#include "unidevice/sdk/device_handler.h"
#include "unidevice/sdk/driver.h"
#include "unidevice/sdk/property.h"

#include <gmock/gmock.h>

namespace {

using UniDevice::Control;
using UniDevice::DeviceHandler;

struct OscDeviceTest : testing::Test {
    ~OscDeviceTest() override { MVR::Util::SingletonCollector::destroyAll(); }

    static Control* find(const std::string& type, const std::string& index) {
        MVR::Tag tag = MVR::Tag::element("control");
        tag.attributeRef("device") = "OSC";
        tag.attributeRef("type") = type;
        tag.attributeRef("index") = index;
        return DeviceHandler::instance()->findControl(tag);
    }
    OscDevice* makeDevice(OscConfig config) { // the handler owns it
        return new OscDevice(
            std::move(config), [this](const std::string& fault) { faults.push_back(fault); });
    }
    static int lines(const std::string& text) {
        const std::string log = MVR::Log::getText();
        int count = 0;
        for (std::size_t at = log.find(text); at != std::string::npos; at = log.find(text, at + 1))
            ++count;
        return count;
    }

    std::vector<std::string> faults; // as they were told
};

// With a device on a free port.
struct LiveOscTest : OscDeviceTest {
    OscDevice& device = *makeDevice({"127.0.0.1", 0, ""});
    UdpSender sender{device.port()};
};

TEST_F(LiveOscTest, EachNumericArgumentIsAControl) {
    sender.send(oscBundle({oscMessage("/camera/position", "ddd", 1.25, 0.1, -3.0),
                           oscMessage("/camera/name", "si", "left", 2)}));
    EXPECT_EQ(device.controlCount(), 0) << "nothing but an update reads";
    EXPECT_TRUE(device.update(0));
    ASSERT_EQ(device.controlCount(), 4);
    const Control* y = device.control(1);
    EXPECT_EQ(y->type, "/camera/position");
    EXPECT_EQ(y->index, 1);
    EXPECT_EQ(y->description, "/camera/position 1");
    EXPECT_EQ(y->kindMask, UniDevice::finite | UniDevice::infinite);
    EXPECT_EQ(y->getValue(), 0.1) << "to the last bit";
    EXPECT_EQ(device.control(3)->index, 1) << "text is counted";
    EXPECT_EQ(device.control(4), nullptr);
    EXPECT_EQ(device.control(-1), nullptr);

    for (int i = 1; i <= 50; ++i)
        sender.send(oscMessage("/camera/position", "ddd", 1.0 * i, 2.0 * i, 0.0));
    sender.send("garbage");
    sender.send(oscMessage("/camera/position", "f", std::nan("")));
    device.update(0);
    EXPECT_EQ(y->value, 100.0) << "the newest";
    EXPECT_EQ(y->previousValue, 0.1) << "from before the update";
    device.update(0);
    EXPECT_EQ(y->value, 100.0) << "held when nothing comes";
    device.activate(0);
    EXPECT_EQ(y->value, 100.0);
}

TEST_F(LiveOscTest, ABoundControlIsThereBeforeItsFirstMessage) {
    UniDevice::Property property("Move X", UniDevice::finite);
    Control* bound = find("/a", "2");
    ASSERT_NE(bound, nullptr);
    property.bind(bound);
    property.deadzone = 0;
    EXPECT_EQ(property.getValue(), 0.0);
    EXPECT_EQ(find("/a", "2"), bound);
    EXPECT_NE(find("/a", "word"), nullptr) << "reads as 0";
    sender.send(oscMessage("/a", "iii", 5, 6, 7));
    device.update(0);
    EXPECT_EQ(property.getValue(), 7.0);
    EXPECT_EQ(device.controlCount(), 3);
    EXPECT_EQ(find("/a", ""), bound) << "of those that fit the first";
    EXPECT_EQ(DeviceHandler::instance()->findControl(MVR::Tag("<control type='/a' index='2'/>")),
              bound);

    const char* const refused[][2] = {{"/a", "-1"},  {"/a", "64"}, {"a", "0"}, {"", "0"},
                                      {"/a b", "0"}, {"/a*", "0"}, {"/", "0"}};
    for (const auto& [type, index] : refused)
        EXPECT_EQ(find(type, index), nullptr) << type << " " << index;
    EXPECT_EQ(DeviceHandler::instance()->findControl(MVR::Tag("<control type='/new'/>")), nullptr)
        << "a binding without a device makes nothing";
    device.destroy();
    EXPECT_EQ(property.control, nullptr);
}

TEST_F(LiveOscTest, DetectionFindsQuickAndSlowMoves) {
    const auto move = [&](const std::string& address, double value) {
        sender.send(oscMessage(address, "d", value));
    };
    move("/fader", 0.5);
    move("/still", 9.0);
    EXPECT_TRUE(device.prepareDetection());
    move("/still", 9.0);
    EXPECT_EQ(device.detectControl(nullptr, nullptr), nullptr);
    for (double value : {0.54, 0.58}) {
        move("/fader", value);
        EXPECT_EQ(device.detectControl(nullptr, nullptr), nullptr);
    }
    move("/fader", 0.35);
    Control* fader = device.detectControl(nullptr, nullptr);
    ASSERT_EQ(fader, find("/fader", "0"));
    EXPECT_LT(fader->value, fader->previousValue) << "the direction of the move";
    EXPECT_EQ(device.detectControl(nullptr, nullptr), nullptr) << "found once";

    // The user looks for a second control, with the first left out.
    device.resetControls();
    EXPECT_EQ(fader->value, 0.0);
    EXPECT_TRUE(device.prepareDetection());
    move("/still", 9.0);
    move("/fader", 0.9);
    move("/new", 1.0);
    const std::vector<Control*> excluded{fader};
    EXPECT_EQ(device.detectControl(&excluded, nullptr), find("/new", "0"));
    device.resetControls();
    device.activate(0);
    EXPECT_EQ(find("/still", "0")->value, 9.0) << "a take has the value that was sent last";
}

TEST_F(LiveOscTest, AFloodOfAddressesLeavesRoomForBindings) {
    for (int i = 0; i < 5000; ++i) {
        sender.send(oscMessage("/flood/" + std::to_string(i), "d", 1.0));
        if (i % 100 == 99)
            device.update(0);
    }
    EXPECT_EQ(device.controlCount(), kMaxOscControls - kControlsForBindings);
    EXPECT_THAT(faults,
                testing::ElementsAre("", "too many controls, dropped from here on: /flood/3584"));
    EXPECT_NE(find("/camera/position", "0"), nullptr);
    sender.send(oscMessage("/camera/position", "d", 3.0));
    device.update(0);
    EXPECT_EQ(find("/camera/position", "0")->value, 3.0);
    for (int i = 0; i < kMaxOscControls; ++i)
        find("/bound/" + std::to_string(i), "0");
    EXPECT_EQ(device.controlCount(), kMaxOscControls);
}

TEST_F(LiveOscTest, AFloodOfBytesDoesNotHoldUpAnUpdate) {
    const std::string large(60000, 'x');
    for (int i = 1; i <= 20; ++i) // as many of them as the system keeps
        sender.send(oscMessage("/count", "is", i, large.c_str()));
    const int mostRead = static_cast<int>(kMaxBytesPerUpdate / large.size()) + 1;
    device.update(0);
    const Control* count = find("/count", "0");
    EXPECT_GE(count->value, 1.0);
    EXPECT_LE(count->value, mostRead);
    for (int i = 0; i < 5; ++i)
        device.update(0);
    sender.send(oscMessage("/count", "i", 99));
    device.update(0);
    EXPECT_EQ(count->value, 99.0) << "all was read in the end";
}

TEST_F(LiveOscTest, APortInUseIsAFaultUntilItIsFree) {
    OscDevice* late = makeDevice({"127.0.0.1", device.port(), "bad file"});
    late->deviceIndex = 1;
    EXPECT_EQ(faults.back(), "bad file; unable to listen on 127.0.0.1 port " +
                                 std::to_string(device.port()) + ": Address already in use");
    EXPECT_FALSE(late->update(0));
    EXPECT_FALSE(late->prepareDetection());
    EXPECT_TRUE(late->activate(0));
    EXPECT_EQ(late->controlCount(), 0);
    EXPECT_NE(late->findControl(MVR::Tag("<control device='OSC' devindex='1' type='/a'/>")),
              nullptr);

    device.destroy();
    EXPECT_TRUE(late->activate(0)) << "tries again with each take";
    EXPECT_EQ(faults.back(), "bad file");
    sender.send(oscMessage("/a", "d", 4.0));
    EXPECT_TRUE(late->update(0));
    EXPECT_EQ(late->control(0)->value, 4.0);
    EXPECT_EQ(makeDevice({"example.org", 9000, ""})->port(), 0) << "names are not looked up";
}

TEST_F(OscDeviceTest, ReadsItsConfiguration) {
    TemporaryFolder folder;
    struct Case {
        const char* text;
        const char* address;
        std::int32_t port;
        const char* fault;
    };
    const char* const kBadPort = "port is not a number from 1 to 65535";
    const Case cases[] = {
        {"<osc><address>0.0.0.0</address><port>9100</port></osc>", "0.0.0.0", 9100, ""},
        {"<osc><port>1</port></osc>", "127.0.0.1", 1, ""},
        {"<osc/>", "127.0.0.1", 9000, ""},
        {"<osc><port>0</port></osc>", "127.0.0.1", 9000, kBadPort},
        {"<osc><port>65536</port></osc>", "127.0.0.1", 9000, kBadPort},
        {"<osc><port>many</port></osc>", "127.0.0.1", 9000, kBadPort},
        {"<other/>", "127.0.0.1", 9000, "not a configuration"},
        {"<osc><port>9100</port>", "127.0.0.1", 9000, "not a configuration"},
    };
    for (const Case& c : cases) {
        const OscConfig config = loadOscConfig(folder.add("osc.xml", c.text));
        EXPECT_EQ(config.address, c.address) << c.text;
        EXPECT_EQ(config.port, c.port) << c.text;
        const std::string path = *c.fault != '\0' ? ", ignored: " + folder.path + "osc.xml" : "";
        EXPECT_EQ(config.fault, c.fault + path) << c.text;
    }
    const OscConfig none = loadOscConfig(folder.path + "none.xml");
    EXPECT_EQ(none.port, 9000);
    EXPECT_EQ(none.fault, "") << "no file is no fault";
}

TEST_F(OscDeviceTest, TheLibraryComesAndGoesAndComesAgain) {
    TemporaryFolder folder;
    OscDevice* const first = makeDevice({"127.0.0.1", 0, ""});
    const std::int32_t port = first->port();
    first->destroy(); // the port is free again
    setenv("MIRVANE_OSC_CONFIG",
           folder.add("osc.xml", "<osc><port>" + std::to_string(port) + "</port></osc>").c_str(),
           1);
    const UdpSender sender(port);
    UniDevice::DriverLoadInfo info;
    info.log = MVR::Log::instance();
    DeviceHandler* handler = DeviceHandler::instance();
    for (int round = 1; round <= 2; ++round) {
        ASSERT_EQ(UniDevice::loadDriverLibraries(OSC_DRIVER_FOLDER, info), 1);
        EXPECT_EQ(lines("OSC: listening on 127.0.0.1 port"), round + 1);
        Control* y = find("/position", "1");
        ASSERT_NE(y, nullptr);
        EXPECT_TRUE(handler->activate());
        sender.send(oscMessage("/position", "dd", 1.0, 2.5));
        handler->update();
        EXPECT_EQ(y->getValue(), 2.5);
        EXPECT_TRUE(handler->prepareDetection());
        sender.send(oscMessage("/position", "dd", 1.0, 4.5));
        EXPECT_EQ(handler->detectControl(nullptr), y);
        EXPECT_TRUE(handler->deactivate());
        UniDevice::Property property("left behind", UniDevice::infinite);
        property.bind(y);
        UniDevice::shutDownDevices();
        EXPECT_EQ(property.control, nullptr);
        EXPECT_TRUE(handler->drivers.empty());
    }
    unsetenv("MIRVANE_OSC_CONFIG");
}

} // namespace
