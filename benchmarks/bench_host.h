// A host without a scene, with an attached core, for benchmarks of what is behind the exports.
#pragma once

#include "core/base/sdk/log.h"
#include "core/core_implementation.h"
#include "core/entry.h"
#include "core/util/sdk/dynamic_object.h"
#include "plugins/contract/c_undo.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

/// Keeps the undo list that a host would keep, and answers all other calls with nothing.
class BenchAdaptor : public MVR::AdaptorInterface {
public:
    std::int32_t getVersion() override { return MVR::kCoreVersion; }
    void setErrorCode(MVR::ErrorCode*) override {}
    void releaseErrorCode() override {}
    void setLog(MVR::Log*) override {}
    void releaseLog() override {}
    std::string getName() override { return "Bench"; }
    std::intptr_t getHostWindow() override { return 0; }
    MVR::SceneNode* createNode(MVR::CInterface*, std::string, std::intptr_t,
                               std::intptr_t) override {
        return nullptr;
    }
    MVR::SceneNode* createNode(MVR::CInterface*, std::string, std::intptr_t, std::intptr_t,
                               std::intptr_t) override {
        return nullptr;
    }
    MVR::SceneNode* createNode(MVR::CInterface*, std::string) override { return nullptr; }
    std::vector<MVR::SceneNode*> getNodes(MVR::CInterface*) override { return {}; }
    std::vector<MVR::SceneNode*> resolveNodes(MVR::Tag, std::string, MVR::CInterface*) override {
        return {};
    }
    std::vector<MVR::SceneNode*> mergeFile(std::string) override { return {}; }
    void beginUndo(std::string) override { ++depth_; }
    void addUndo(MVR::CUndo* object) override { undo_.emplace_back(object); }
    void endUndo() override { --depth_; }
    void cancelUndo() override { --depth_; }
    bool isUndoOpen() override { return depth_ > 0; }
    bool undo() override { return false; }
    double getTime() override { return time_; }
    void setTime(double time) override { time_ = time; }
    void getRange(double* start, double* end) override {
        *start = 0;
        *end = 1e6;
    }
    void setRange(double, double) override {}
    double getFrameRate() override { return 60; }
    double getFrameStep() override { return 1.0 / 60; }
    void redraw() override {}
    void beginKeyboardCapture() override {}
    void endKeyboardCapture() override {}
    void recordingStarted(const std::vector<MVR::CInterface*>&) override {}
    void recordingFinished() override {}
    void detachNotify() override {}
    MVR::Tag getSettingsLayout() override { return {}; }

    /// Drops all steps, as a host does before it detaches.
    void clearUndo() { undo_.clear(); }

private:
    std::vector<MVR::Util::Owned<MVR::CUndo>> undo_;
    int depth_ = 0;
    double time_ = 0;
};

/// Attached as long as it lives, with a home folder of its own and a quiet log.
template <class Adaptor>
class BenchHostOf {
public:
    BenchHostOf() {
        std::string name =
            (std::filesystem::temp_directory_path() / "mirvane_bench_XXXXXX").string();
        home_ = mkdtemp(name.data());
        for (const char* folder : {"Oskelworks/Mirvane/data", "data", "plugins"})
            std::filesystem::create_directories(home_ / folder);
        const std::string home = home_.string();
        std::ofstream(home_ / "registry.ini")
            << R"([Software\Microsoft\Windows\CurrentVersion\Explorer\Shell Folders])"
            << "\nPersonal=" << home << "\n"
            << R"([SOFTWARE\Oskelworks\Lensetta])"
            << "\npath=" << home << "\ndatapath=" << home << "/data\npluginpath=" << home
            << "/plugins\n";
        setenv("MIRVANE_REGISTRY", (home + "/registry.ini").c_str(), 1);
        MVR::libraryLoaded(MVR::Platform::ownModule());
        core = static_cast<MVR::CoreImplementation*>(MVR::attachAdaptor(&adaptor));
        MVR::Log::setThreshold(MVR::Log::Error);
    }
    BenchHostOf(const BenchHostOf&) = delete;
    BenchHostOf& operator=(const BenchHostOf&) = delete;
    ~BenchHostOf() {
        adaptor.clearUndo();
        (void)MVR::detachCore(core);
        MVR::libraryUnloading();
        unsetenv("MIRVANE_REGISTRY");
        std::filesystem::remove_all(home_);
    }

    /// The install folder and the user's documents.
    const std::filesystem::path& getHome() const { return home_; }

    Adaptor adaptor;
    MVR::CoreImplementation* core = nullptr;

private:
    std::filesystem::path home_;
};

using BenchHost = BenchHostOf<BenchAdaptor>;
