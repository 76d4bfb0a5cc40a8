// A model file of any bytes is listed, its page is described, it is loaded as far as possible, and
// the result is written and loads again.

#include "core/contract/core_extensions.h"
#include "host.h"
#include "plugins/instanciatable.h"

#include <cstdint>
#include <fstream>
#include <string>

using namespace MVR;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string& home = *new std::string(inputFolder());
    static Host& host = *new Host("[SOFTWARE\\Oskelworks\\Lensetta]\npath=" + home +
                                  "\ndatapath=" + home + "/data\n");
    CoreImplementation& core = *host.core;
    CoreModels& models = *getModels(core);
    const std::string file = home + "/PRM/model.prm";
    const std::string again = home + "/again.prm";
    std::filesystem::create_directory(home + "/PRM");
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    core.buildCatalogue();
    require(core.getCatalogueSize() == 1);
    const Tag listed = models.getCatalogue();
    require(listed.child(0).child("file").value().size() >= file.size());
    (void)core.getCatalogueEntry(0)->describePage();

    const bool isModel = models.load(file, "") == 0;
    const std::size_t count = host.toolCount();
    require(!isModel || count > 0);
    if (count > 0) {
        require(models.save("", again) == 0);
        core.deleteAllInstances();
        require(models.load(again, "") == 0);
        require(host.toolCount() == count);
    }
    host.undoAll();
    host.clear();
    core.setRecent(Tag());
    return 0;
}
