#include "unidevice/sdk/property_handler.h"

#include "input_test.h"
#include "support/scripted_device.h"
#include "support/vtable_slot.h"

#include <clocale>
#include <type_traits>
#include <vector>

namespace {

using namespace UniDevice;
using MVR::Testing::expectSlots;
using MVR::Testing::ScriptedDevice;

struct PropertyTest : InputTest {
    ScriptedDevice& stick = *new ScriptedDevice("Stick");
    Property property{"Move", UniDevice::finite | UniDevice::infinite};
};

TEST_F(PropertyTest, MapsAControlsValue) {
    struct Case {
        double x, deadzone, exponent, multiplier, offset, result;
    };
    const Case cases[] = {
        {0.1, 0.1, 1, 1, 0, 0},     {0.55, 0.1, 1, 1, 0, 0.5},  {1, 0.1, 1, 1, 0, 1},
        {-1, 0.1, 1, 1, 0, -1},     {-0.5, 0, 2, 10, 1, -1.5},  {0.05, 0.1, 1, 5, 0, 0},
        {-0.05, 0.1, 1, 5, 2, 2},   {4, 0, 1, 1, 0, 4},         {1.9, 0.1, 2, 3, 0, 12},
        {0, 0, 0, 1, 0, 1 /*0^0*/}, {-0.0, 0, 0, 1, 0, 1},      {0.5, 0, 1, -2, 0.25, -0.75},
        {-3, 0.5, 1, 1, 0, -5},     {0, -0.5, 1, 1, 0, 1. / 3},
    };
    property.bind(stick.add("x"));
    for (const Case& c : cases) {
        stick.set("x", c.x);
        property.deadzone = c.deadzone;
        property.exponent = c.exponent;
        property.multiplier = c.multiplier;
        property.offset = c.offset;
        EXPECT_NEAR(property.getValue(), c.result, 1e-12)
            << c.x << " " << c.deadzone << " " << c.exponent;
    }
    property.bind(nullptr);
    property.exponent = 1;
    property.deadzone = 0.1;
    property.offset = 3;
    EXPECT_EQ(property.getValue(), 3.0) << "unbound";
}

TEST_F(PropertyTest, BindsAndUnbindsInAnyOrder) {
    Control* key = stick.add("key", binary);
    Control* axis = stick.add("axis", UniDevice::finite);
    Property::Listener cache;
    cache.bound = true;
    property.listeners.push_back(&cache);
    property.offset = 7;

    EXPECT_EQ(property.bind(axis), UniDevice::finite);
    EXPECT_EQ(property.bind(key), 0) << "no kind in common, bound all the same";
    EXPECT_EQ(property.control, key);
    EXPECT_TRUE(axis->targets.empty()) << "the old control still knows the property";
    EXPECT_EQ(property.bind(nullptr), 65535);
    EXPECT_TRUE(key->targets.empty());

    property.bind(axis);
    stick.set("axis", 1.0);
    EXPECT_EQ(property.getValue(), 8.0);
    {
        const Control copy(*axis);
        EXPECT_EQ(copy.value, 1.0);
        EXPECT_TRUE(copy.targets.empty());
    }
    EXPECT_EQ(property.control, axis) << "a copy's end is not the control's";
    {
        Property other("Other", UniDevice::finite);
        other.bind(axis);
    }
    EXPECT_TRUE(cache.bound);
    stick.remove("axis");
    EXPECT_EQ(property.getValue(), 7.0);
    EXPECT_EQ(property.control, nullptr);
    EXPECT_FALSE(cache.bound);
}

TEST_F(PropertyTest, KeepsItsParametersInATag) {
    std::setlocale(LC_ALL, "de_DE.UTF-8"); // a host may set any
    property.readSettings(parsed("<property><multiplier>2.5</multiplier><other>9</other>"
                                 "<exponent>none</exponent></property>"));
    EXPECT_EQ(property.multiplier, 2.5);
    EXPECT_EQ(property.exponent, 1.0);
    EXPECT_EQ(property.deadzone, 0.1);
    property.offset = -0.12345678;
    EXPECT_EQ(written(property),
              "<property name=\"Move\"><multiplier>2.5</multiplier><exponent>1</exponent>"
              "<deadzone>0.1</deadzone><offset>-0.123457</offset></property>");
    std::setlocale(LC_ALL, "C");
}

TEST(PropertyHandlerTest, KeepsOnePropertyOfEachName) {
    struct Doubled final : Property {
        using Property::Property;
        double getValue() const override { return 2 * Property::getValue(); }
    };
    struct DoubledFactory final : Property::Factory {
        Property* create(const std::string& name, std::int32_t kinds) const override {
            return new Doubled(name, kinds);
        }
    };
    PropertyHandler handler;
    Property* first = handler.getOrCreate("Pan", UniDevice::finite, Property::PlainFactory());
    Property* second = handler.getOrCreate("Tilt", trinary, DoubledFactory());
    second->offset = 4;
    EXPECT_EQ(second->getValue(), 8.0);
    EXPECT_EQ(handler.getOrCreate("Pan", binary, DoubledFactory()), first);
    EXPECT_EQ(handler.count(), 2);
    EXPECT_EQ(handler.property("Tilt"), second);
    EXPECT_EQ(handler.property("tilt"), nullptr);
    EXPECT_EQ(handler.property(0), first);
    EXPECT_EQ(handler.property(-1), nullptr);
    EXPECT_EQ(handler.property(2), nullptr);
}

/// The offset of a field, its size and its alignment; `Type` fixes its type.
struct FieldPlace {
    const char* name;
    std::ptrdiff_t offset;
    std::size_t size;
    std::size_t alignment;
};
template <class Type, class Object, class Field>
FieldPlace placeOf(const char* name, const Object& object, const Field& field) {
    static_assert(std::is_same_v<Type, Field>);
    return {name, reinterpret_cast<const char*>(&field) - reinterpret_cast<const char*>(&object),
            sizeof(Field), alignof(Field)};
}

TEST_F(PropertyTest, SharedFieldsFollowTheTableOfOperationsInTheirOrder) {
    const Control control(nullptr, binary, 0);
    const Device& device = stick;
    using Text = std::string;
    using Int = std::int32_t;
    const struct {
        std::size_t size;
        std::vector<FieldPlace> fields;
    } cases[] = {
        {sizeof(Control),
         {placeOf<std::vector<ControlTarget*>>("targets", control, control.targets),
          placeOf<Int>("kindMask", control, control.kindMask),
          placeOf<double>("previousValue", control, control.previousValue),
          placeOf<double>("value", control, control.value),
          placeOf<double>("threshold", control, control.threshold),
          placeOf<Text>("type", control, control.type),
          placeOf<Int>("index", control, control.index),
          placeOf<Text>("description", control, control.description),
          placeOf<Device*>("device", control, control.device),
          placeOf<std::uint32_t>("arrivals", control, control.arrivals)}},
        {sizeof(Device),
         {placeOf<Text>("name", device, device.name),
          placeOf<Int>("deviceIndex", device, device.deviceIndex),
          placeOf<DeviceHandler*>("handler", device, device.handler),
          placeOf<Driver*>("driver", device, device.driver)}},
        {sizeof(Property),
         {placeOf<std::vector<Property::Listener*>>("listeners", property, property.listeners),
          placeOf<Control*>("control", property, property.control),
          placeOf<Text>("name", property, property.name),
          placeOf<Int>("acceptedKinds", property, property.acceptedKinds),
          placeOf<double>("multiplier", property, property.multiplier),
          placeOf<double>("exponent", property, property.exponent),
          placeOf<double>("deadzone", property, property.deadzone),
          placeOf<double>("offset", property, property.offset)}},
    };
    for (const auto& shared : cases) {
        std::size_t end = sizeof(void*); // the pointer to the table of operations
        for (const FieldPlace& field : shared.fields) {
            end = (end + field.alignment - 1) / field.alignment * field.alignment;
            EXPECT_EQ(field.offset, static_cast<std::ptrdiff_t>(end)) << field.name;
            end += field.size;
        }
        constexpr std::size_t kWord = alignof(void*);
        EXPECT_EQ(shared.size, (end + kWord - 1) / kWord * kWord) << "nothing follows";
    }
}

TEST(InputContractTest, OrderOfVirtualOperationsIsFrozen) {
    // A destructor has two slots.
    expectSlots("control", 0, &Control::toTag, &Control::matches, &Control::getValue,
                &Control::destroy);
    expectSlots("target", 0, &ControlTarget::controlRemoved);
    expectSlots("property", 0, &Property::controlRemoved, &Property::getValue);
    expectSlots("factory", 0, &Property::Factory::create);
    expectSlots("driver", 0, &Driver::update, &Driver::prepareDetection, &Driver::detectControl,
                &Driver::addDevice, &Driver::removeDevice, &Driver::device, &Driver::deviceCount,
                &Driver::activate, &Driver::deactivate);
    expectSlots("driver", 11, &Driver::destroy);
    expectSlots("device", 0, &Device::destroy);
    expectSlots("device", 3, &Device::toTag, &Device::controlCount, &Device::control,
                &Device::update, &Device::findControl, &Device::prepareDetection,
                &Device::detectControl, &Device::resetControls, &Device::activate,
                &Device::deactivate);
}

} // namespace
