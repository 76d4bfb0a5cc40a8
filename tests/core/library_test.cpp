// The shared library as a host sees it: through its exports alone.

#include "core/contract/core_interface.h"
#include "core/contract/host_event.h"
#include "platform/libraries.h"
#include "support/temp_home.h"
#include "support/test_adaptor.h"

#include <gmock/gmock.h>

namespace {

using namespace MVR;
using namespace MVR::Testing;

struct LoadedCore {
    LoadedCore() : library(Platform::loadLibrary(CORE_LIBRARY)) {
        EXPECT_NE(library, nullptr) << Platform::lastLibraryError();
    }
    ~LoadedCore() { Platform::freeLibrary(library); }
    template <class Function>
    Function find(const char* name) {
        void* const function = Platform::findFunction(library, name);
        EXPECT_NE(function, nullptr) << name;
        return reinterpret_cast<Function>(function);
    }
    Platform::LibraryHandle library;
};

TEST(LibraryTest, TheLibraryServesAttachmentsAndLeavesNothingBehind) {
    TempHome home;
    for (int load = 0; load < 2; ++load) {
        {
            LoadedCore library;
            const auto attach = library.find<AttachFunction>("attach");
            const auto detach = library.find<DetachFunction>("detach");
            const auto pump = library.find<PumpEventsFunction>("pumpEvents");
            EXPECT_EQ(library.find<GetVersionFunction>("getVersion")(), 8108);
            for (int attachment = 0; attachment < 2; ++attachment) {
                RecordingAdaptor adaptor;
                CoreInterface* const core = attach(&adaptor);
                ASSERT_NE(core, nullptr);
                EXPECT_EQ(core->getName(), "CORE");
                ASSERT_EQ(core->startRecording(), 0);
                EXPECT_GE(pump(nullptr), 0);
                adaptor.clearUndo();
                EXPECT_EQ(detach(core), 0);
                EXPECT_FALSE(adaptor.isUndoOpen());
            }
            EXPECT_EQ(detach(nullptr), 0);
        }
        EXPECT_THAT(readText(home.documents() + "/data/Core/core.log"),
                    testing::EndsWith("[EOF]\n"));
    }
}

} // namespace
