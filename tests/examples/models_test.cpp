#include "platform/sdk/files.h"
#include "plugins/contract/c_interface.h"
#include "tests/stage/session_test.h"
#include "unidevice/sdk/property.h"

#include <cmath>
#include <cstdlib>
#include <sstream>
#include <string>

namespace Stage {
namespace {

const std::string kModels = MODELS;
const std::string kFiles = FILES;

/// The models of examples/, and the one that docs/formats.md shows, on the stage.
class ExampleModels : public SessionTest {
protected:
    static std::string read(const std::string& path) {
        std::string bytes;
        EXPECT_TRUE(MVR::Platform::readFile(path, bytes)) << path;
        return bytes;
    }

    /// Returns a line for each object: "name kind at x y z, N vertices, below parent, hidden".
    std::string describeScene() const {
        std::ostringstream text;
        for (const auto& node : session.scene.getNodes()) {
            const Matrix place = node->evaluateGlobal(0);
            text << node->getSceneName() << " " << node->getKind() << " at " << rounded(place[12])
                 << " " << rounded(place[13]) << " " << rounded(place[14]);
            if (node->getMesh() != nullptr)
                text << ", " << node->getMesh()->vertices.size() << " vertices";
            if (node->getParentNode() != nullptr)
                text << ", below " << node->getParentNode()->getSceneName();
            text << (node->isShown() ? "\n" : ", hidden\n");
        }
        return text.str();
    }

    /// Returns "name (type: bound properties; tools below)" for the tools of a configuration.
    static std::string describeTools(const MVR::Tag& tag) {
        std::string text;
        for (std::int32_t i = 0; i < tag.childCount("MVR_Plugin"); ++i) {
            const MVR::Tag& tool = tag.child("MVR_Plugin", i);
            const MVR::Tag& profile = tool.child("inputprofile").child(0);
            int bound = 0;
            for (std::int32_t j = 0; j < profile.childCount(); ++j)
                bound += profile.child(j).child("control").isEmpty() ? 0 : 1;
            text += tool.child("name").value() + " (" + tool.child("type").value() + ": " +
                    std::to_string(bound) + "; " + describeTools(tool) + ")";
            text += tool.child("checked").value() == "false" ? " unchecked" : "";
        }
        return text;
    }

    static double rounded(double value) { return std::round(value * 1e6) / 1e6 + 0.0; }
};

TEST_F(ExampleModels, HaveTheirToolsObjectsAndLinksAndAreSavedAlike) {
    const struct {
        const char* file;
        const char* top;
        const char* tools;
        const char* scene;
    } cases[] = {
        {"dolly.prm", "Dolly", "Dolly (Tracked Object: 1; Dolly camera (Free Camera: 2; ))",
         "Dolly 0 at 0 0 0, 64 vertices\n"
         "Dolly camera 1 at 0 1.25 0, below Dolly\n"},
        {"vehicle.prm", "Truck", "Truck (Tracked Object: 7; Steering (Tracked Object: 4; ))",
         "Truck 0 at 0 0 0, 64 vertices\n"
         "Truck_truck_body 0 at 0 0 0, 144 vertices, below Truck, hidden\n"
         "Truck_truck_front_axle 0 at 0 0 0, 72 vertices, below Steering, hidden\n"
         "Steering 0 at 0 0.4 -1.4, 40 vertices, below Truck\n"},
        {"handheld.prm", "Handheld camera",
         "Handheld camera (Tracked Object: 7; Camera light (Tracked Object: 0; ) unchecked)",
         "Handheld camera 1 at 0 0 0\n"
         "Camera light 2 at 0 0.15 -0.1, below Handheld camera\n"},
    };
    for (const auto& model : cases) {
        const std::string path = kModels + model.file;
        ASSERT_EQ(session.getModels().load(path, ""), 0) << model.file;
        EXPECT_EQ(describeTools(session.getCore().getConfiguration()), model.tools);
        EXPECT_EQ(describeScene(), model.scene) << model.file;
        ASSERT_EQ(session.getModels().save(model.top, folder.path + "again.prm"), 0);
        EXPECT_EQ(folder.read("again.prm"), read(path)) << model.file;
        ASSERT_TRUE(session.undo.undo());
        EXPECT_EQ(describeScene(), "") << model.file;
    }
}

TEST_F(ExampleModels, AreMadeAgainByteForByte) {
    const std::string script =
        "MIRVANE_STAGE='" STAGE "' '" + kModels + "make.sh' '" + folder.path + "'";
    ASSERT_EQ(std::system(script.c_str()), 0);
    for (const char* file : {"dolly.prm", "vehicle.prm", "handheld.prm"})
        EXPECT_EQ(folder.read(file), read(kModels + file)) << file;
}

TEST_F(ExampleModels, TheDocumentedOneIsReadAsItSays) {
    ASSERT_EQ(session.getModels().load(kFiles + "example_model.xml", ""), 0);
    EXPECT_EQ(describeTools(session.getCore().getConfiguration()),
              "Arm (Tracked Object: 1; Arm camera (Tracked Object: 0; ) unchecked)");
    EXPECT_EQ(describeScene(), "Arm 0 at 1 0 -2, 3 vertices\n"
                               "Arm_arm_detail 0 at 0 0 0, 3 vertices, below Arm, hidden\n"
                               "Arm camera 1 at 1 1.5 -2, below Arm, hidden\n");
    const Matrix turned = session.scene.findByHostName("Arm")->evaluateGlobal(0);
    EXPECT_NEAR(turned[2], -1, 1e-12) << "x points to where -z was";
    EXPECT_NEAR(session.scene.findByHostName("Arm_arm_detail")->evaluateGlobal(0)[0], 0.01, 1e-12);
    MVR::CInterface* const arm = session.scene.findByHostName("Arm")->getOwner();
    EXPECT_EQ(arm->findProperty("Rotation Y")->multiplier, 0.5);
    ASSERT_TRUE(session.undo.undo());

    std::string nameless = read(kFiles + "example_model.xml");
    nameless.erase(nameless.find("<name>Arm</name>"), 16);
    ASSERT_EQ(session.getModels().load(folder.add("nameless.prm", nameless), ""), 0);
    EXPECT_EQ(describeTools(session.getCore().getConfiguration()),
              "Tracked Object_01 (Tracked Object: 0; Arm camera (Tracked Object: 0; ) unchecked)");
    EXPECT_EQ(describeScene(), "Tracked Object_01 0 at 0 0 0\nArm camera 1 at 0 0 0\n");
}

} // namespace
} // namespace Stage
