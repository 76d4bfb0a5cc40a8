// Files of presets of any bytes. They are read as a whole or not at all, what was read is applied
// to a tool and comes back from it, and saving or removing a preset leaves all others unchanged.

#include "host.h"
#include "plugins/instance_reference.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/profile_managers.h"

#include <filesystem>
#include <set>
#include <string>
#include <system_error>

namespace {

using namespace MVR;
namespace fs = std::filesystem;

struct ToolHost : Host {
    ToolHost() {
        InstanceReference* const reference = core->createByType("Empty Plugin", "Tool", false);
        require(reference != nullptr);
        tool = reference->getInstance();
        for (const char* name : {"Move", "Turn"})
            tool->addProperty(name, UniDevice::finite | UniDevice::binary, nullptr);
    }

    PluginInstance* tool = nullptr;
};

/// The files of an input; removed with this object.
struct Folder {
    explicit Folder(const std::string& input) : path(inputFolder()) {
        for (const char* name : {"/file.oip", "/file.ocp"}) {
            std::error_code error;
            do // the fuzzer's own clock interrupts calls
                fs::copy_file(input, path + name, fs::copy_options::overwrite_existing, error);
            while (error == std::errc::interrupted);
            require(!error);
        }
    }
    ~Folder() { fs::remove_all(path); }
    std::string path;
};

using Names = std::multiset<std::string>;

Names namesIn(ProfileManager& list, const std::string& path) {
    Names names;
    for (const Tag& preset : list.loadFile(path)) {
        require(preset.kind() == Tag::Element && preset.hasName("profile"));
        names.insert(list.elementName(preset));
    }
    require(names.size() <= static_cast<std::size_t>(ProfileManager::kMostProfiles));
    return names;
}

void removeEach(ProfileManager& list, const std::string& folder, const std::string& file) {
    const Names before = namesIn(list, file);
    for (const std::string& name : std::set<std::string>(before.begin(), before.end())) {
        Tag preset = Tag::element("profile");
        preset.attributeRef("name") = name;
        Names expected = namesIn(list, file);
        const Names all = expected;
        expected.erase(name);
        list.removeFromFile(preset, file);
        const Names left = namesIn(list, file);
        require(left == expected || left == all); // all: what can't be written again stays
        const std::string own = list.saveToFile(preset, folder);
        if (own.empty())
            continue;
        require(fs::path(own).parent_path() == folder && namesIn(list, own).count(name) == 1);
        list.removeFromFile(preset, own);
        require(namesIn(list, own).count(name) == 0);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static ToolHost& host = *new ToolHost;
    const Folder folder(writeInput(data, size));
    InputProfileManager inputs;
    ConfigProfileManager configs;
    inputs.addSourcePath(folder.path);
    inputs.reload();
    for (std::int32_t i = 0; i < inputs.elementCount(); ++i) {
        const Tag& preset = inputs.element(i)->data;
        const std::int32_t missing = host.tool->applyInputProfile(preset);
        require(missing >= 0 && missing <= preset.childCount());
        const Tag saved = host.tool->getInputProfile("again"); // with what isn't there
        require(host.tool->applyInputProfile(saved) <= missing);
        require(host.tool->getInputProfile("again") == saved);
        host.tool->applyConfigProfile(preset);
        require(host.tool->getConfigProfile("").childCount() <= preset.childCount());
    }
    removeEach(inputs, folder.path, folder.path + "/file.oip");
    removeEach(configs, folder.path, folder.path + "/file.ocp");
    for (const auto& file : fs::directory_iterator(folder.path)) {
        const std::string name = file.path().filename().string();
        require(name == "file.oip" || name == "file.ocp" || name == ".mvr-lock" ||
                name == "file.oip.bad" || name == "file.ocp.bad");
    }
    return 0;
}
