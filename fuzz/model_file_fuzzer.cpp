// A model's file of any bytes: it is listed, its page described, it is loaded as far as it goes,
// and what came into being is written and loads again.

#include "core/core_implementation.h"
#include "core/entry.h"
#include "core/log.h"
#include "instance/plugin_instance.h"
#include "plugins/instanciatable.h"
#include "support/test_adaptor.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

using namespace MVR;
namespace fs = std::filesystem;

void require(bool holds) {
    if (!holds)
        std::abort();
}

/// Attached as long as the process runs, with a folder of its own that goes with it.
struct Host {
    Host() {
        std::string name = (fs::temp_directory_path() / "mirvane_fuzz_XXXXXX").string();
        require(mkdtemp(name.data()) != nullptr);
        home = new fs::path(name);
        std::atexit([] { fs::remove_all(*home); });
        fs::create_directories(*home / "PRM");
        std::ofstream(*home / "registry.ini")
            << R"([SOFTWARE\Oskelworks\Lensetta])"
            << "\npath=" << name << "\ndatapath=" << name << "/data\n";
        setenv("MIRVANE_REGISTRY", (*home / "registry.ini").c_str(), 1);
        libraryLoaded(Platform::ownModule());
        core = static_cast<CoreImplementation*>(attachAdaptor(&adaptor));
        require(core != nullptr);
        Log::setThreshold(Log::Critical); // else the log of refusals fills the memory
    }

    static inline fs::path* home = nullptr;
    MVR::Testing::RecordingAdaptor adaptor;
    CoreImplementation* core = nullptr;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Host& host = *new Host;
    CoreImplementation& core = *host.core;
    const std::string file = (*Host::home / "PRM/model.prm").string();
    const std::string again = (*Host::home / "again.prm").string();
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    core.buildCatalogue();
    require(core.getCatalogueSize() == 1);
    const Tag listed = core.getCatalogue();
    require(listed.child(0).child("file").value().size() >= file.size());
    (void)core.getCatalogueEntry(0)->describePage();

    const bool isModel = core.loadModel(file) == 0;
    const std::size_t count = core.getInstances(false).size();
    require(!isModel || count > 0);
    if (count > 0) {
        require(core.saveModel("", again) == 0);
        core.deleteAllInstances();
        require(core.loadModel(again) == 0);
        require(core.getInstances(false).size() == count);
    }
    while (host.adaptor.undo()) {
    }
    core.deleteAllInstances();
    host.adaptor.clearUndo();
    host.adaptor.nodes.clear();
    host.adaptor.calls.clear();
    core.setRecent(Tag());
    return 0;
}
