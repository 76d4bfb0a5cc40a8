// A file of the stage's scene. What is read enters a scene, and what that scene writes can be read
// again and is written the same. The tools are left out: their text is the core's.

#include "input_file.h"
#include "platform/sdk/files.h"
#include "require.h"
#include "stage/scene/scene.h"
#include "stage/scene/scene_file.h"
#include "stage/scene/timeline.h"
#include "stage/scene/undo_list.h"

namespace {

// Reads the file and writes what was read. Returns false if it can't be read or written.
bool pass(const std::string& from, const std::string& to) {
    Stage::SceneData data;
    std::string error;
    if (!Stage::readSceneFile(from, data, error)) {
        require(!error.empty());
        return false;
    }
    Stage::UndoList undo;
    Stage::Scene scene(undo);
    Stage::Timeline timeline;
    Stage::bringScene(data, scene, timeline);
    require(scene.getNodes().size() == data.nodes.size() && undo.getUndoCount() == 0);
    const bool isWritten =
        Stage::writeSceneFile(to, Stage::takeScene(scene, timeline, {}, {}), error);
    require(isWritten || !error.empty());
    return isWritten;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string once = inputFolder() + "/once.scene";
    const std::string twice = inputFolder() + "/twice.scene";
    if (!pass(writeInput(data, size), once))
        return 0;
    require(pass(once, twice));
    std::string first;
    std::string second;
    require(MVR::Platform::readFile(once, first) && MVR::Platform::readFile(twice, second));
    require(first == second);
    return 0;
}
