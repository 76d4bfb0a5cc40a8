#pragma once

#include "core/base/sdk/error_code.h"
#include "core/base/sdk/log.h"
#include "core/contract/core_extensions.h"
#include "core/core_implementation.h"
#include "core/entry.h"
#include "platform/sdk/clock.h"
#include "support/temp_home.h"
#include "support/test_adaptor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace MVR::Testing {

inline std::string identifierOf(std::int32_t code) {
    return ErrorCode::instance()->find(code).getIdentifier();
}

/// Expects each line in the text, at or after the one before it.
inline void expectInOrder(const std::string& text, const std::vector<const char*>& lines) {
    std::size_t at = 0;
    for (const char* line : lines) {
        at = text.find(line, at);
        ASSERT_NE(at, std::string::npos) << line;
    }
}

/// An attached core: loaded and attached before each test, detached and unloaded after it, with a
/// home of its own and the clock in the test's hand.
class CoreTest : public testing::Test {
protected:
    void SetUp() override {
        libraryLoaded(Platform::ownModule());
        core = static_cast<CoreImplementation*>(attachAdaptor(&adaptor));
        ASSERT_NE(core, nullptr);
    }

    void TearDown() override {
        adaptor.clearUndo();
        EXPECT_EQ(detachCore(core), 0);
        libraryUnloading();
    }

    TempHome home;
    Platform::HandClock clock;
    RecordingAdaptor adaptor;
    CoreImplementation* core = nullptr;
};

} // namespace MVR::Testing
