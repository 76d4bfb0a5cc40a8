#pragma once

#include "platform/temporary_folder.h"
#include "stage/host/session.h"
#include "stage/takes/take.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace Stage {

/// The host with the real core and the example tools, its documents in a folder of the test's own.
class SessionTest : public testing::Test {
protected:
    void SetUp() override {
        // None of these tests needs the network.
        setenv("MIRVANE_OSC_CONFIG", (folder.path + "none.xml").c_str(), 1);
        open(session);
    }
    void open(Session& opened) {
        InstallValues values;
        values.core = CORE;
        values.documents = folder.path;
        ASSERT_TRUE(opened.open(values, error)) << error;
    }
    /// A tool without bindings: an unbound property reads its offset.
    void place(const char* type, const char* name, const std::vector<Setting>& settings) {
        ASSERT_NE(session.place({type, name, {}, settings}, error), nullptr) << error;
    }
    TakeFigures take(double start, double end) {
        session.timeline.setRange(start, end);
        session.timeline.setTime(session.timeline.getStart());
        TakePlan plan;
        plan.countdownSeconds = 0;
        plan.autoExpand = false;
        const auto figures = runTake(session, plan, nullptr, {}, error);
        EXPECT_TRUE(figures) << error;
        return figures.value_or(TakeFigures());
    }

    TemporaryFolder folder;
    std::string error;
    Session session;
};

} // namespace Stage
