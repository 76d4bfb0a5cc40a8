#pragma once

#include "core/util/sdk/singleton.h"
#include "data/sdk/tag.h"
#include "unidevice/dummy_driver.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device_handler.h"

#include <gmock/gmock.h>

#include <string>

/// An input layer with only the built-in driver, torn down after each test as at unload.
struct InputTest : testing::Test {
    InputTest()
        : handler(*UniDevice::DeviceHandler::instance()), driver(*new UniDevice::DummyDriver) {}
    ~InputTest() override { MVR::Util::SingletonCollector::destroyAll(); }

    UniDevice::DeviceHandler& handler;
    UniDevice::DummyDriver& driver; // the handler owns it
};

inline MVR::Tag parsed(const std::string& text) {
    return MVR::Tag(text);
}

template <class Named>
std::string written(const Named& named) {
    MVR::Tag tag;
    named.toTag(tag);
    return tag.toText("", "", "");
}
