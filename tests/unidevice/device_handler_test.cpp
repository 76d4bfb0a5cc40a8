#include "unidevice/sdk/device_handler.h"

#include "core/base/sdk/log.h"
#include "input_test.h"
#include "support/scripted_device.h"
#include "unidevice/emulated_trinary_device.h"

#include <functional>
#include <map>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

using namespace UniDevice;
using MVR::Testing::ScriptedDevice;
using testing::ElementsAre;

struct DeviceHandlerTest : InputTest {};

std::vector<std::string>* ends = nullptr;

struct EndingDevice : ScriptedDevice {
    using ScriptedDevice::ScriptedDevice;
    ~EndingDevice() override { ends->push_back(name); }
};

struct StaticDevice : ScriptedDevice {
    using ScriptedDevice::ScriptedDevice;
    void destroy() override {} // its library frees it later
};

struct EndingDriver : DummyDriver {
    explicit EndingDriver(const std::string& driverName) { name = driverName; }
    ~EndingDriver() override { ends->push_back(name); }
};

TEST_F(DeviceHandlerTest, FindsTheControlThatABindingNames) {
    auto* first = new ScriptedDevice("Stick");
    auto* second = new ScriptedDevice("Stick");
    second->deviceIndex = 1;
    Control* x0 = first->add("x");
    Control* x1 = first->add("x", UniDevice::finite, 1);
    Control* secondX = second->add("x");
    Control* unnamed = second->add("", UniDevice::finite, 3);

    EXPECT_EQ(written(*x1), "<control device=\"Stick\" index=\"1\" type=\"x\">"
                            "<description>Stick: x</description></control>");
    EXPECT_EQ(written(*secondX), "<control device=\"Stick\" devindex=\"1\" index=\"0\" type=\"x\">"
                                 "<description>Stick: x</description></control>");
    for (Control* control : {x0, x1, secondX, unnamed})
        EXPECT_EQ(handler.findControl(parsed(written(*control))), control);
    struct Case {
        const char* binding;
        Control* found;
    };
    const Case cases[] = {
        {"<control device='Stick' type='x'/>", x0},
        {"<control type='x' index='1'/>", x1},
        {"<control device='' devindex='' type='x' index=''/>", x0},
        {"<control devindex='1' type='x'/>", secondX},
        {"<control devindex='1' type='x' index='word'/>", secondX}, // reads as 0
        {"<control devindex='word' type='x' index='1'/>", x1},
        {"<control/>", unnamed},
        {"<control device='Stick' type='x' index='2'/>", nullptr},
        {"<control device='stick' type='x'/>", nullptr},
        {"<control devindex='2' type='x'/>", nullptr},
        {"<control type='X'/>", nullptr},
    };
    for (const Case& c : cases)
        EXPECT_EQ(handler.findControl(parsed(c.binding)), c.found) << c.binding;
    Control alone(nullptr, binary, 0.5);
    alone.type = "a";
    alone.description = "A key";
    EXPECT_EQ(written(alone), "<control index=\"0\" type=\"a\">"
                              "<description>A key</description></control>");
    EXPECT_TRUE(alone.matches(parsed("<control device='Any' type='a'/>")));
    EXPECT_EQ(handler.findDevice("Stick", 1), second);
    EXPECT_EQ(handler.findDevice("Stick", 2), nullptr);
    EXPECT_EQ(first->control(-1), nullptr);
    EXPECT_EQ(first->control(first->controlCount()), nullptr);
}

TEST_F(DeviceHandlerTest, KeepsDevicesAtTheirPositions) {
    auto* a = new ScriptedDevice("a");
    auto* b = new ScriptedDevice("b");
    auto* c = new ScriptedDevice("c");
    c->registerWith(0, nullptr);
    EXPECT_THAT(handler.devices, ElementsAre(c, a, b));
    a->registerWith(2, &handler); // leaves first, so this is the end
    EXPECT_THAT(handler.devices, ElementsAre(c, b, a));
    b->registerWith(5, nullptr);
    EXPECT_THAT(handler.devices, ElementsAre(c, a));
    EXPECT_EQ(b->handler, &handler);
    EXPECT_EQ(b->handlerIndex(), -1);
    c->unregister();
    EXPECT_EQ(a->handlerIndex(), 0);
    EXPECT_EQ(c->handlerIndex(), -1);

    EXPECT_THAT(driver.devices, ElementsAre(a, b, c)) << "a driver polls unlisted devices too";
    handler.update();
    EXPECT_EQ(b->updates, 1);
    b->destroy();
    c->setDriver(nullptr);
    EXPECT_THAT(driver.devices, ElementsAre(a));
    c->destroy();
}

/// Does what the test wants in each of its calls, and may be gone after that.
struct FickleDevice : ScriptedDevice {
    using ScriptedDevice::ScriptedDevice;
    bool note() {
        const std::function<void()> act = onCall;
        ++calls[name];
        if (act)
            act();
        return true;
    }
    bool update(std::int32_t) override { return note(); }
    bool activate(std::int32_t) override { return note(); }
    bool deactivate(std::int32_t) override { return note(); }
    bool prepareDetection() override { return note(); }
    void resetControls() override { note(); }
    Control* detectControl(const std::vector<Control*>*, void*) override {
        Control* const moved = onCall ? nullptr : control(0);
        return note() ? moved : nullptr;
    }
    std::function<void()> onCall;
    static inline std::map<std::string, int> calls;
};

struct FickleDeviceTest : DeviceHandlerTest {
    const std::map<std::string, std::function<void()>> operations{
        {"update", [this] { handler.update(); }},
        {"activate", [this] { handler.activate(); }},
        {"deactivate", [this] { handler.deactivate(); }},
        {"prepareDetection", [this] { handler.prepareDetection(); }},
        {"detectControl", [this] { handler.detectControl(nullptr); }},
        {"resetControls", [this] { handler.resetControls(); }},
    };
};

TEST_F(FickleDeviceTest, DevicesMayComeAndGoDuringEachCall) {
    using Names = std::vector<const char*>;
    const std::vector<Names> endings{{"c"},     {"b"}, {"d"}, {"b", "c"}, {"a", "b", "d", "e"},
                                     {"c", "d"}};
    for (const auto& [name, run] : operations) {
        for (const Names& ending : endings) {
            FickleDevice::calls.clear();
            std::map<std::string, FickleDevice*> made;
            for (const char* each : {"a", "b", "c", "d", "e"}) {
                made[each] = new FickleDevice(each);
                made[each]->set("x", made[each]->add("x")->threshold + 1);
            }
            made["c"]->onCall = [&] {
                for (const char* each : ending)
                    std::exchange(made[each], nullptr)->destroy();
                made["f"] = new FickleDevice("f");
            };
            run();
            for (const char* each : {"a", "b", "c", "d", "e"}) {
                const bool hadNoTurn = made[each] == nullptr && std::string(each) > "c";
                EXPECT_EQ(FickleDevice::calls[each], hadNoTurn ? 0 : 1) << name << " " << each;
            }
            handler.destroyDevices();
        }
    }
}

TEST_F(FickleDeviceTest, WhatThrowsIsLeftOutAndCostsNobodyElse) {
    for (const auto& [name, run] : operations) {
        auto* const broken = new FickleDevice("broken");
        auto* const next = new FickleDevice("next");
        broken->onCall = [] { throw std::runtime_error("broken"); };
        FickleDevice::calls.clear();
        run();
        EXPECT_EQ(FickleDevice::calls["next"], 1) << name;
        handler.update();
        handler.update();
        EXPECT_LE(FickleDevice::calls["broken"], 2) << "it is left out";
        EXPECT_EQ(FickleDevice::calls["next"], 3);
        broken->onCall = nullptr;
        handler.activate();
        handler.update();
        EXPECT_GE(FickleDevice::calls["broken"], 3);
        next->destroy();
        broken->destroy();
    }
    EXPECT_THAT(MVR::Log::getText(),
                testing::HasSubstr("(ERROR): The device broken threw in detectControl: broken\n"));

    struct Leaving final : DummyDriver {
        void update() override { destroy(); }
        bool activate() override { throw 1; }
    };
    (new Leaving)->name = "leaving";
    auto* const third = new DummyDriver;
    auto* const polled = new ScriptedDevice("polled");
    polled->setDriver(third);
    EXPECT_FALSE(handler.activate());
    handler.deactivate();
    handler.update();
    EXPECT_EQ(polled->activations + polled->updates, 2);
    EXPECT_EQ(handler.findDriver("leaving"), nullptr);
}

struct CountingDevice : ScriptedDevice {
    using ScriptedDevice::ScriptedDevice;
    Control* control(std::int32_t index) override {
        ++looks;
        return ScriptedDevice::control(index);
    }
    static inline int looks = 0;
};

TEST_F(DeviceHandlerTest, ThousandsOfBindingsAreResolvedInTimeInProportion) {
    constexpr int kCount = 1000;
    auto* const emulator = new EmulatedTrinaryDevice;
    auto* const wide = new CountingDevice("Wide");
    for (int i = 0; i < kCount; ++i)
        wide->add("c" + std::to_string(i));
    for (int i = 0; i < kCount; ++i)
        (new CountingDevice("d" + std::to_string(i)))->add("x");
    for (int i = 1; i < kCount; ++i) {
        Control* const up = handler.findControl(parsed(written(*wide->control(i))));
        Control* const down = handler.findControl(
            parsed("<control device='d" + std::to_string(i) + "' type='x' index='0'/>"));
        ASSERT_TRUE(up != nullptr && down != nullptr) << i;
        Control* const pair = emulator->createControl(up, down);
        ASSERT_EQ(handler.findControl(parsed(written(*pair))), pair);
    }
    EXPECT_LT(CountingDevice::looks, 40 * kCount);
    EXPECT_EQ(emulator->controlCount(), kCount - 1);

    Device* const renamed = handler.findDevice("d7", 0);
    renamed->name = "d9";
    EXPECT_EQ(handler.findDevice("d7", 0), nullptr);
    EXPECT_EQ(handler.findDevice("d9", 0)->name, "d9");
    wide->remove("c3");
    wide->add("new");
    EXPECT_EQ(handler.findControl(parsed("<control device='Wide' type='c3'/>")), nullptr);
    EXPECT_NE(handler.findControl(parsed("<control device='Wide' type='c4'/>")), nullptr);
    EXPECT_NE(handler.findControl(parsed("<control device='Wide' type='new'/>")), nullptr);
}

TEST_F(DeviceHandlerTest, TheControlThatMovedMostIsDetected) {
    EXPECT_EQ(handler.detectControl(nullptr), nullptr) << "no device";
    auto* second = new DummyDriver;
    auto* a = new ScriptedDevice("a");
    auto* b = new ScriptedDevice("b");
    auto* c = new ScriptedDevice("c");
    c->setDriver(second);
    Control* a0 = a->add("0");
    Control* a1 = a->add("1");
    Control* b0 = b->add("0");
    Control* c0 = c->add("0");
    EXPECT_TRUE(handler.prepareDetection());
    EXPECT_EQ(handler.detectControl(nullptr), nullptr);

    for (ScriptedDevice* device : {a, b, c})
        device->set("0", 0.1); // no more than the threshold
    EXPECT_EQ(handler.detectControl(nullptr), nullptr);
    handler.resetControls();
    for (ScriptedDevice* device : {a, b, c})
        device->set("0", -0.75);
    a->set("1", 0.75);
    EXPECT_EQ(handler.detectControl(nullptr), a0) << "of equals the first, at each level";
    std::vector<Control*> excluded{a0};
    EXPECT_EQ(handler.detectControl(&excluded), a1);
    excluded.push_back(a1);
    EXPECT_EQ(handler.detectControl(&excluded), b0);
    excluded.push_back(b0);
    EXPECT_EQ(handler.detectControl(&excluded), c0);
    c->set("0", 0.5);
    EXPECT_EQ(handler.detectControl(nullptr), c0);
    handler.resetControls();
    EXPECT_EQ(c0->change(), 0.0);
}

TEST_F(DeviceHandlerTest, AFailedDeviceDoesNotKeepTheOthersFromATake) {
    auto* a = new ScriptedDevice("a");
    auto* b = new ScriptedDevice("b");
    EXPECT_TRUE(handler.activate());
    a->works = false;
    EXPECT_FALSE(handler.activate());
    EXPECT_FALSE(handler.deactivate());
    EXPECT_EQ(b->activations, 2);
    EXPECT_EQ(b->deactivations, 1);
}

TEST_F(DeviceHandlerTest, EndsDevicesThenDriversLastFirst) {
    std::vector<std::string> ended;
    ends = &ended;
    auto* named = new EndingDriver("driver");
    (new EndingDevice("a"))->setDriver(named);
    new EndingDevice("b");
    handler.destroyDevices();
    handler.destroyDrivers();
    EXPECT_THAT(ended, ElementsAre("b", "a", "driver"));
    EXPECT_TRUE(handler.devices.empty());
    EXPECT_TRUE(handler.drivers.empty());

    // A driver that is destroyed before its devices, and a device that is left for the singleton.
    auto* late = new EndingDevice("late");
    late->setDriver(new EndingDriver("early"));
    late->driver->destroy();
    EXPECT_EQ(late->driver, nullptr);
    MVR::Util::SingletonCollector::destroyAll();
    EXPECT_THAT(ended, ElementsAre("b", "a", "driver", "early", "late"));

    StaticDevice kept("kept");
    kept.setDriver(new DummyDriver);
    DeviceHandler::instance()->destroyDevices();
    EXPECT_EQ(kept.handler, nullptr);
    EXPECT_EQ(kept.driver, nullptr);
    EXPECT_TRUE(DeviceHandler::instance()->devices.empty());
}

} // namespace
