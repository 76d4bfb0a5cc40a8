#include "support/core_fixture.h"
#include "support/golden.h"

#include "platform/keyboard_hook.h"
#include "support/scripted_tool.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

using namespace MVR;
using namespace MVR::Testing;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

constexpr std::size_t kTimeLength = 18; // "YYYYMMDD HH:MM:SS "

/// Returns the log from `start` on, without times and with the home's path as "~".
std::string withoutTimes(const std::string& text, const std::string& home) {
    std::string result;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = text.find('\n', begin) + 1;
        if (text.compare(begin, 5, "[EOF]") == 0)
            result += text.substr(begin, end - begin);
        else
            result += text.substr(begin + kTimeLength, end - begin - kTimeLength);
        begin = end;
    }
    for (std::size_t at = 0; (at = result.find(home, at)) != std::string::npos;)
        result.replace(at, home.size(), "~");
    return result;
}

void expectLog(const std::string& name, const std::string& text) {
    expectGolden(std::string(GOLDEN_FOLDER) + "/" + name + ".txt", text);
}

struct LifecycleTest : testing::Test {
    /// Returns what was logged since the last call.
    std::string logged() {
        const std::string all = Log::getText();
        const std::string fresh = all.substr(std::min(seen, all.size()));
        seen = all.size();
        return withoutTimes(fresh, home.install().substr(0, home.install().rfind('/')));
    }
    std::size_t seen = 0;
    TempHome home;
    Platform::HandClock clock;
    RecordingAdaptor adaptor;
};

TEST_F(LifecycleTest, TheFourEdgesRunInTheirOrder) {
    home.write(std::string("documents/Oskelworks/Mirvane/data/Stage/settings.xml"),
               "<MVRConfig><element id=\"101\">Debug</element></MVRConfig>");
    libraryLoaded(Platform::ownModule());
    expectLog("load", logged());

    CoreInterface* const core = attachAdaptor(&adaptor);
    ASSERT_NE(core, nullptr);
    expectLog("attach", logged());
    ASSERT_GE(adaptor.calls.size(), 4U); // then the root is created
    adaptor.calls.resize(4);
    EXPECT_THAT(adaptor.calls,
                ElementsAre("getVersion", "setErrorCode", "setLog", "getHostWindow"));
    adaptor.calls.clear();
    adaptor.clearUndo();
    logged();

    EXPECT_EQ(detachCore(core), 0);
    expectLog("detach", logged());
    EXPECT_THAT(adaptor.calls, ElementsAre("detachNotify", "releaseErrorCode", "releaseLog"));

    libraryUnloading();
    const std::string file = readText(home.documents() + "/data/Core/core.log");
    const std::size_t last = file.rfind("Shutting down CORE");
    ASSERT_NE(last, std::string::npos);
    const std::string tail = file.substr(file.rfind('\n', last) + 1);
    expectLog("unload", withoutTimes(tail, home.install().substr(0, home.install().rfind('/'))));
}

TEST_F(LifecycleTest, AnAdaptorOfAnotherVersionIsRefusedBeforeAnythingElse) {
    libraryLoaded(Platform::ownModule());
    logged();
    adaptor.version = 8107;
    EXPECT_EQ(attachAdaptor(&adaptor), nullptr);
    EXPECT_EQ(attachAdaptor(nullptr), nullptr);
    EXPECT_EQ(logged(), "(ERROR): version mismatch trying to attach to CORE\n"
                        "(ERROR): CORE version: 8108\n(ERROR): Adaptor version: 8107\n");
    EXPECT_THAT(adaptor.calls, ElementsAre("getVersion", "getVersion"));
    libraryUnloading();
}

TEST_F(LifecycleTest, AttachmentsComeOneAtATimeAndInTurn) {
    libraryLoaded(Platform::ownModule());
    EXPECT_EQ(detachCore(nullptr), 0);
    EXPECT_THAT(logged(), HasSubstr("Unlinking adaptor from CORE"));
    adaptor.onCall = [this](const std::string& call) {
        EXPECT_TRUE(call != "setLog" || attachAdaptor(&adaptor) == nullptr);
    };
    CoreInterface* const first = attachAdaptor(&adaptor);
    EXPECT_THAT(logged(), HasSubstr("Initializing UniDevice"));

    RecordingAdaptor second;
    EXPECT_EQ(attachAdaptor(&second), nullptr);
    EXPECT_EQ(logged(), "(ERROR): another adaptor is attached to CORE\n");
    EXPECT_THAT(second.calls, ElementsAre("getVersion"));
    adaptor.clearUndo();
    EXPECT_EQ(detachCore(first), 0);
    EXPECT_EQ(detachCore(first), 0); // once too often

    Log::setThreshold(Log::Notice);
    logged();
    CoreInterface* const again = attachAdaptor(&second);
    ASSERT_NE(again, nullptr);
    EXPECT_THAT(logged(), Not(HasSubstr("Initializing UniDevice")));
    EXPECT_EQ(again->startRecording(), 0); // it works, and has its key hook
    EXPECT_TRUE(Platform::deliverKey('A', true, false));
    second.clearUndo();
    EXPECT_EQ(detachCore(again), 0); // ends the take
    EXPECT_THAT(second.calls, IsSupersetOf({"recordingFinished"}));
    EXPECT_FALSE(Platform::deliverKey('A', true, false));
    libraryUnloading();
}

TEST_F(LifecycleTest, WithoutARegistryEverythingWorksButTheFiles) {
    home.forgetRegistry();
    libraryLoaded(Platform::ownModule());
    EXPECT_THAT(logged(), AllOf(HasSubstr("(ERROR): Unable to find my documents path\n"),
                                HasSubstr("Unable to find Mirvane registry repository\n")));
    CoreInterface* const core = attachAdaptor(&adaptor);
    ASSERT_NE(core, nullptr);
    bool silent = false;
    EXPECT_TRUE(core->getProperty(Setting::kSilentMode, &silent));
    EXPECT_TRUE(silent);
    adaptor.clearUndo();
    EXPECT_EQ(detachCore(core), 0);
    libraryUnloading();
}

TEST_F(LifecycleTest, TheFirstSessionOfAnAccountHasALogWhereverItsFoldersCanBe) {
    const std::string named = home.install() + "/../documents";
    setenv("HOME", home.install().c_str(), 1);
    setenv("XDG_CONFIG_HOME", home.install().c_str(), 1);
    for (const bool canBeMade : {true, false}) {
        std::filesystem::remove_all(named);
        if (!canBeMade)
            home.write("documents", "a file is in the way");
        libraryLoaded(Platform::ownModule());
        libraryUnloading();
        const std::string root = canBeMade ? named : home.install();
        const std::string log = readText(root + "/Oskelworks/Mirvane/data/Core/core.log");
        const std::string first = log.substr(0, log.find('\n'));
        EXPECT_THAT(first, HasSubstr(canBeMade ? "Initializing CORE"
                                               : "/documents can't be made (File exists), so " +
                                                     home.install() + " serves"));
    }
    unsetenv("XDG_CONFIG_HOME");
}

TEST_F(LifecycleTest, AHostThatForgetsToDetachStillGetsAWholeLog) {
    libraryLoaded(Platform::ownModule());
    CoreInterface* const core = attachAdaptor(&adaptor);
    libraryUnloading();
    EXPECT_THAT(readText(home.documents() + "/data/Core/core.log"),
                testing::EndsWith("an adaptor is still attached to CORE\n[EOF]\n"));
    adaptor.clearUndo();
    EXPECT_EQ(detachCore(core), 0);
    libraryUnloading();
}

using CoreInterfaceTest = CoreTest;

TEST_F(CoreInterfaceTest, BoxesAnswerThemselvesInSilentMode) {
    const struct {
        std::uint32_t kind;
        std::int32_t answers[4]; // by default button
    } rows[] = {{0, {1, 1, 1, 1}}, {1, {1, 2, 1, 1}}, {2, {3, 4, 5, 3}}, {3, {6, 7, 2, 6}},
                {4, {6, 7, 6, 6}}, {5, {4, 2, 4, 4}}, {6, {2, 2, 2, 2}}, {9, {1, 1, 1, 1}}};
    for (const auto& row : rows)
        for (std::uint32_t button = 0; button < 4; ++button)
            EXPECT_EQ(core->messageBox(0, "text", "title", row.kind | button << 8 | 0x20),
                      row.answers[button])
                << row.kind << " " << button;
}

TEST_F(CoreInterfaceTest, WithoutALayoutTheMainDialogStaysClosed) {
    EXPECT_EQ(identifierOf(core->openMainDialog(0)), "NOMAINDLGCOMPONENT");
    EXPECT_FALSE(core->isMainDialogOpen());
    EXPECT_EQ(identifierOf(core->closeMainDialog()), "MAINDLG_NOTOPEN");
    EXPECT_THAT(Log::getText(), HasSubstr("(WARNING): Return value: The main dialog is not open"));
}

TEST_F(CoreInterfaceTest, TheButtonsOfTheDialogReachTheRecorder) {
    Util::MessageNode button("button");
    Util::Message record(20000, 9205);
    EXPECT_EQ(button.send(core, record), 0);
    EXPECT_TRUE(core->isRecording());
    EXPECT_EQ(button.send(core, record), 0);
    EXPECT_FALSE(core->isRecording());
    adaptor.calls.clear();
    adaptor.time = 1;
    Util::Message resimulate(20000, 9206);
    EXPECT_EQ(button.send(core, resimulate), 0);
    EXPECT_THAT(adaptor.calls, IsSupersetOf({"beginUndo Resimulating", "endUndo"}));
}

TEST_F(CoreInterfaceTest, TheHostsTimeReachesTheToolsThatAreChecked) {
    ScriptedPlugin& kind = ScriptedPlugin::add("Rig");
    for (const char* name : {"A", "B", "C"})
        kind.place(*core, name);
    core->setInstanceChecked("B", false);
    core->setInstanceChecked("nobody", false);
    core->update(1.5);
    EXPECT_THAT(kind.calls, testing::AllOf(Contains("A setTime 1.5"), Contains("C setTime 1.5"),
                                           Not(Contains("B setTime 1.5"))));
    core->setInstanceChecked("Mirvane", true); // and all below
    core->update(2.5);
    EXPECT_THAT(kind.calls, Contains("B setTime 2.5"));
    core->deleteAllInstances();
    core->update(3.5);
    EXPECT_THAT(kind.calls, Not(Contains(HasSubstr("setTime 3.5"))));
    EXPECT_THAT(core->getInstances(false), ElementsAre());
}

TEST_F(CoreInterfaceTest, TheRecentListComesBackWithTheNextAttachmentAlsoFromADamagedFile) {
    ScriptedPlugin::add("Rig");
    ASSERT_NE(core->createByType("Rig", "Mine", true), nullptr);
    ASSERT_NE(core->createByType("Rig", "Other", true), nullptr);
    const std::string file = "documents/Oskelworks/Mirvane/data/Stage/recent.xml";
    for (const std::int32_t expected : {2, 1}) {
        adaptor.clearUndo();
        EXPECT_EQ(detachCore(core), 0);
        const std::string text = readText(home.documents() + "/data/Stage/recent.xml");
        if (expected == 1) // within the later entry
            home.write(file, text.substr(0, text.rfind("Other")));
        core = static_cast<CoreImplementation*>(attachAdaptor(&adaptor));
        ASSERT_EQ(core->getRecentCount(), expected);
        EXPECT_EQ(core->getRecentLabel(0), "Mine");
    }
}

TEST_F(CoreInterfaceTest, TheEventPumpDeliversKeysAndReturnsWhenItIsNeededAgain) {
    HostEvent key;
    key.virtualKey = 'A';
    key.pressed = true;
    EXPECT_EQ(pumpHostEvents(&key), -1);
    EXPECT_FALSE(key.swallowed);
    ASSERT_EQ(core->startRecording(), 0);
    EXPECT_EQ(pumpHostEvents(&key), 40); // the first frame at 25 per second
    EXPECT_TRUE(key.swallowed);
    key.swallowed = false;
    key.size = 4; // a record of no known kind
    pumpHostEvents(&key);
    EXPECT_FALSE(key.swallowed);
    HostEvent escape;
    escape.virtualKey = 27;
    pumpHostEvents(&escape);
    EXPECT_FALSE(core->isRecording());
}

} // namespace
