#include "core/util/composite.h"
#include "core/util/factory_manager.h"

#include "core/base/sdk/log.h"
#include "data/sdk/tag.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using namespace MVR::Util;
using testing::ElementsAre;

std::vector<std::string>* ends = nullptr; // what was destroyed, in order

struct UtilTest : testing::Test {
    UtilTest() { ends = &ended; }
    ~UtilTest() override {
        SingletonCollector::destroyAll();
        ends = nullptr;
    }
    std::vector<std::string> ended;
};

template <char Name>
class Service : public Singleton<Service<Name>> {
public:
    ~Service() override { ends->push_back(std::string(1, Name)); }
};

class LateUser : public Singleton<LateUser> {
public:
    ~LateUser() override {
        Service<'A'>::instance(); // older: still the same one
        Service<'Z'>::instance(); // created by a destructor: must not remain
        ends->push_back("late user");
    }
};

TEST_F(UtilTest, SingletonsEndNewestFirstWhateverOtherObjectsOfTheirClassesDo) {
    Service<'A'>* const a = Service<'A'>::instance();
    Service<'B'>::instance();
    { Service<'B'> onTheStack; }
    Service<'C'>::instance();
    LateUser::instance();
    EXPECT_EQ(Service<'A'>::instance(), a);
    ended.clear();
    SingletonCollector::destroyAll();
    EXPECT_THAT(ended, ElementsAre("late user", "Z", "C", "B", "A"));
    EXPECT_NE(Service<'A'>::instance(), nullptr); // and the next load starts anew
}

TEST_F(UtilTest, AnAdoptedSingletonIsUsedButNeverOwned) {
    Service<'A'> foreign;
    Service<'A'>* const own = Service<'A'>::instance();
    Service<'A'>::adopt(&foreign);
    EXPECT_EQ(Service<'A'>::instance(), &foreign);
    SingletonCollector::destroyAll();
    EXPECT_THAT(ended, ElementsAre("A")); // the own one
    EXPECT_EQ(Service<'A'>::instance(), &foreign);
    Service<'A'>::adopt(nullptr);
    EXPECT_NE(Service<'A'>::instance(), &foreign);
    EXPECT_NE(Service<'A'>::instance(), own);
}

struct Thing {
    std::string text;
};

class ThingFactory : public FactoryManager<Thing>::Factory, public DynamicCreator<ThingFactory> {
public:
    ThingFactory(std::string name, std::string mark) : name_(std::move(name)), mark_(mark) {}
    ~ThingFactory() override { ends->push_back(mark_); }
    std::string getName() const override { return name_; }
    Thing* create(MVR::Tag tag) override { return new Thing{mark_ + tag.value()}; }

private:
    std::string name_;
    std::string mark_;
};

TEST_F(UtilTest, TheFirstFactoryOfANameBuildsFromItsTags) {
    auto* const factories = FactoryManager<Thing>::instance();
    const auto make = [](const char* name, const char* mark) {
        return Owned<FactoryManager<Thing>::Factory>(new ThingFactory(name, mark));
    };
    EXPECT_TRUE(factories->registerFactory(make("dialog", "first ")));
    EXPECT_FALSE(factories->registerFactory(make("dialog", "second ")));
    EXPECT_THAT(ended, ElementsAre("second "));
    const MVR::Tag tag = MVR::Tag::element("dialog", "text");
    auto* const factory = factories->find(tag);
    ASSERT_NE(factory, nullptr);
    const std::unique_ptr<Thing> thing(factory->create(tag));
    EXPECT_EQ(thing->text, "first text");
    EXPECT_EQ(factories->find(MVR::Tag::element("button")), nullptr);
}

class Branch : public Composite_Dynamic<Branch> {
public:
    Branch(std::string name, std::vector<std::string>* events)
        : name_(std::move(name)), events_(events) {}
    ~Branch() override { events_->push_back("~" + name_); }
    void destroyComposite() override { delete this; }
    void onAttached() override { events_->push_back("+" + name_); }
    void onDetached() override { events_->push_back("-" + name_); }
    const std::string& name() const { return name_; }

private:
    std::string name_;
    std::vector<std::string>* events_;
};

TEST(CompositeTest, ChildrenMoveBetweenParentsAndEndLastToFirst) {
    std::vector<std::string> events;
    const auto names = [](const Branch& parent) {
        std::vector<std::string> result;
        for (const Branch* child : parent.getChildren())
            result.push_back(child->name());
        return result;
    };
    {
        Branch first("first", &events);
        Branch second("second", &events);
        first.add(nullptr);
        Branch* children[3];
        for (int index = 0; index < 3; ++index)
            first.add(children[index] = new Branch(std::string(1, 'a' + index), &events));
        events.clear();

        second.add(children[1]);
        EXPECT_THAT(events, ElementsAre("-b", "+b"));
        first.add(children[0]); // once more: to the end
        EXPECT_THAT(names(first), ElementsAre("c", "a"));
        second.remove(children[1]);
        EXPECT_EQ(children[1]->getParent(), nullptr);
        EXPECT_THAT(names(second), ElementsAre());
        first.add(children[1]);
        delete children[0]; // leaves by itself
        EXPECT_THAT(names(first), ElementsAre("c", "b"));
        events.clear();
    }
    EXPECT_THAT(events, ElementsAre("~second", "~first", "~b", "~c"));
}

} // namespace
