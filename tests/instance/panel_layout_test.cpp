#include "instance/panel_layout.h"

#include <gtest/gtest.h>

namespace MVR {
namespace {

TEST(PanelLayout, WritesItsTags) {
    PanelLayout panel;
    std::int32_t steps = 3;
    double size = 1.5;
    bool flag = true;
    std::string text = "t";
    EXPECT_EQ(panel.addButton("early", "", nullptr), PanelLayout::kNoId);
    panel.begin();
    EXPECT_EQ(panel.addSpinnerInt("Lost", "", nullptr, 0, 9, 1, 4, nullptr), PanelLayout::kNoId);
    EXPECT_EQ(panel.addSpinner("Lost", "", nullptr, 0, 9, 1, 4, nullptr), PanelLayout::kNoId);
    EXPECT_EQ(panel.addSpinnerInt("Steps", "a", &steps, 0, 9, 1, 4, nullptr), 0);
    panel.beginGroup("G", "tip");
    EXPECT_EQ(panel.addSpinner("Size", "b", &size, -1, 1, 0.25, 5, nullptr), 1);
    EXPECT_EQ(panel.addCheck("Flag", "c", &flag, nullptr), 2);
    panel.beginGroup("Inner", "");
    EXPECT_EQ(panel.addText("Text", "d", &text, nullptr), 3);
    panel.endGroup();
    panel.endGroup();
    EXPECT_EQ(panel.addCombo("Combo", "e", {"p", "q"}, &text, nullptr), 4);
    EXPECT_EQ(panel.addButton("Button", "f", nullptr), 5);
    EXPECT_EQ(panel.addCheck("None", "g", nullptr, nullptr), 6);

    const std::string head =
        "<verticalscroll><lockheight/><body><border><space><left>16</left><top>20</top>"
        "<right>5</right><bottom>5</bottom></space><style>none</style><body><list><body>";
    const std::string controls =
        "<spinner_int><name>Steps</name><id>0</id><minvalue>0</minvalue><maxvalue>9</maxvalue>"
        "<stepsize>1</stepsize><triggerlength>4</triggerlength><value>3</value>"
        "<resetvalue>3</resetvalue><tooltip>a</tooltip></spinner_int>"
        "<group><name>G</name><body><list><body>"
        "<spinner><name>Size</name><id>1</id><minvalue>-1</minvalue><maxvalue>1</maxvalue>"
        "<stepsize>0.25</stepsize><triggerlength>5</triggerlength><value>1.5</value>"
        "<resetvalue>1.5</resetvalue><tooltip>b</tooltip></spinner>"
        "<check><id>2</id><size><y>20</y></size><name>Flag</name><value>true</value>"
        "<tooltip>c</tooltip></check>"
        "<group><name>Inner</name><body><list><body>"
        "<text><name>Text</name><id>3</id><value>t</value><tooltip>d</tooltip></text>"
        "</body></list></body><tooltip/></group>"
        "</body></list></body><tooltip>tip</tooltip></group>"
        "<combo><id>4</id><size><y>20</y></size><name>Combo</name><value>t</value>"
        "<data><entry>p</entry><entry>q</entry></data><tooltip>e</tooltip></combo>"
        "<button><id>5</id><size><y>20</y></size><name>Button</name><tooltip>f</tooltip></button>"
        "<check><id>6</id><size><y>20</y></size><name>None</name><tooltip>g</tooltip></check>";
    const std::string tail = "</body></list></body></border></body></verticalscroll>";
    EXPECT_EQ(panel.getTag(), Tag(head + controls + tail)) << panel.getTag().toText("", "", "");
    ASSERT_EQ(panel.getBindings().size(), 7u);
    EXPECT_EQ(panel.getBindings()[1].variable, &size);
    EXPECT_EQ(panel.getBindings()[5].variable, nullptr);

    panel.end();
    EXPECT_TRUE(panel.getTag().isEmpty());
    EXPECT_EQ(panel.addText("late", "", &text, nullptr), PanelLayout::kNoId);
    panel.endGroup();
    panel.begin();
    EXPECT_EQ(panel.addButton("again", "", nullptr), 7) << "ids only grow";
    panel.endGroup();
    panel.endGroup();
    EXPECT_EQ(panel.addButton("outside", "", nullptr), PanelLayout::kNoId);
}

} // namespace
} // namespace MVR
