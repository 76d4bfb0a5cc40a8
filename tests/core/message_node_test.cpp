#include "core/messages/sdk/message_node.h"

#include "core/base/error_codes.h"
#include "core/base/sdk/log.h"
#include "support/vtable_slot.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace MVR::Util;
using testing::ElementsAre;
using testing::HasSubstr;

/// Notes what it receives, then runs the test's handler.
class Recorder : public MessageNode {
public:
    Recorder(const char* name, std::vector<std::string>* events)
        : MessageNode(name), events_(events) {}
    ~Recorder() override = default;

    void receive(Message& message, bool viaBroadcast) override {
        events_->push_back(getName() + (viaBroadcast ? " hears " : " gets ") +
                           std::to_string(message.id));
        if (action)
            action(message);
    }

    std::function<void(Message&)> action;

private:
    std::vector<std::string>* events_;
};

struct MessageNodeTest : testing::Test {
    MessageNodeTest() {
        MVR::registerCommonCodes();
        source = std::make_unique<Recorder>("source", &events);
        for (const char* name : {"a", "b", "c", "d"}) {
            listeners.push_back(std::make_unique<Recorder>(name, &events));
            EXPECT_EQ(listeners.back()->listenTo(source.get()), 0);
        }
        events.clear();
    }
    ~MessageNodeTest() override {
        source.reset();
        listeners.clear();
        SingletonCollector::destroyAll();
    }
    /// Returns whom "id 5" reaches if one handler does something.
    std::vector<std::string> broadcastWith(int handler, std::function<void(Message&)> action) {
        listeners[handler]->action = [action](Message& message) {
            if (message.id == 5)
                action(message);
        };
        Message message(5);
        events.clear();
        source->broadcast(message);
        return events;
    }
    std::int32_t stop(int listener) { return listeners[listener]->stopListeningTo(source.get()); }

    std::vector<std::string> events;
    std::unique_ptr<Recorder> source;
    std::vector<std::unique_ptr<Recorder>> listeners;
};

TEST_F(MessageNodeTest, LinksAreMadeOnceAndEndWithEitherNode) {
    EXPECT_EQ(listeners[0]->listenTo(source.get()), 0);
    EXPECT_THAT(events, ElementsAre());
    EXPECT_EQ(source->getListenerCount(), 4);
    EXPECT_EQ(source->getListener(4), nullptr);
    EXPECT_EQ(source->getListener(-1), nullptr);

    std::string farewell;
    source->action = [&](Message& message) {
        farewell = message.text;
        EXPECT_TRUE(source->hasListener(message.sender)); // the link still exists
    };
    EXPECT_EQ(stop(1), 0);
    EXPECT_EQ(farewell, "b has stopped listening to source");
    EXPECT_THAT(events, ElementsAre("source gets -2"));
    EXPECT_FALSE(source->hasListener(listeners[1].get()));
    EXPECT_FALSE(listeners[1]->isListeningTo(source.get()));
    EXPECT_EQ(source->getListener(1), listeners[2].get());

    auto* const codes = MVR::ErrorCode::instance();
    EXPECT_EQ(codes->find(stop(1)).getIdentifier(), "MESSAGE_NOT_LISTENING");
    Message message(7);
    EXPECT_EQ(source->send(nullptr, message), 1026);
    EXPECT_EQ(source->listenTo(nullptr), 1026);
    EXPECT_EQ(source->stopListeningTo(nullptr), 1026);
    EXPECT_EQ(source->getListenerCount(), 3);
}

TEST_F(MessageNodeTest, ABroadcastReachesEachRemainingListenerOnceWhateverHandlersDo) {
    const auto all = ElementsAre("d hears 5", "c hears 5", "b hears 5", "a hears 5");
    EXPECT_THAT(broadcastWith(2, [&](Message& m) { EXPECT_EQ(m.sender, source.get()); }), all);

    // Stops listening itself: nobody is skipped.
    EXPECT_THAT(broadcastWith(2, [&](Message&) { EXPECT_EQ(stop(2), 0); }),
                ElementsAre("d hears 5", "c hears 5", "source gets -2", "b hears 5", "a hears 5"));
    ASSERT_EQ(listeners[2]->listenTo(source.get()), 0); // a, b, d, c

    // One that is still to come leaves, from the middle: nobody is called twice.
    EXPECT_THAT(broadcastWith(2, [&](Message&) { EXPECT_EQ(stop(1), 0); }),
                ElementsAre("c hears 5", "source gets -2", "d hears 5", "a hears 5"));
    // A new listener gets nothing this time.
    EXPECT_THAT(broadcastWith(2, [&](Message&) { EXPECT_EQ(listeners[1]->listenTo(&*source), 0); }),
                ElementsAre("c hears 5", "source gets -1", "d hears 5", "a hears 5"));
    // A handler that destroys another listener.
    EXPECT_THAT(broadcastWith(2, [&](Message&) { listeners[0].reset(); }),
                ElementsAre("b hears 5", "c hears 5", "source gets -2", "d hears 5"));
    // One inside another, and then the sender goes: each walk ends there.
    listeners[1]->action = nullptr;
    listeners[3]->action = [&](Message& message) {
        if (message.id == 6)
            source.reset();
    };
    EXPECT_THAT(broadcastWith(2,
                              [&](Message&) {
                                  Message inner(6);
                                  source->broadcast(inner);
                              }),
                ElementsAre("b hears 5", "c hears 5", "b hears 6", "c hears 6", "d hears 6",
                            "b hears -3", "c hears -3", "d hears -3"));
}

TEST_F(MessageNodeTest, ADestroyedNodeTellsItsListenersAndLeavesNoLink) {
    std::vector<std::string> others;
    Recorder above("above", &others);
    ASSERT_EQ(source->listenTo(&above), 0);
    std::intptr_t gone = 0;
    listeners[0]->action = [&gone](Message& message) { gone = message.lParam; };
    others.clear();
    const auto address = reinterpret_cast<std::intptr_t>(source.get());
    source.reset();
    EXPECT_EQ(gone, address);
    EXPECT_THAT(events, ElementsAre("d hears -3", "c hears -3", "b hears -3", "a hears -3"));
    EXPECT_THAT(others, ElementsAre("above gets -2"));
    EXPECT_EQ(above.getListenerCount(), 0);
    for (const auto& listener : listeners)
        EXPECT_EQ(listener->getSourceCount(), 0);

    // The last user leaves, and is then freed.
    above.action = [this, isFreed = false](Message& message) mutable {
        if (message.id == StoppedListening && !std::exchange(isFreed, true))
            listeners[0].reset();
    };
    ASSERT_EQ(listeners[0]->listenTo(&above), 0);
    EXPECT_EQ(listeners[0]->stopListeningTo(&above), 0);
    EXPECT_EQ(above.getListenerCount(), 0);
}

TEST_F(MessageNodeTest, TheTraceShowsWhoSendsWhat) {
    MVR::Log::setThreshold(MVR::Log::Trace);
    Message message(5, 1, -2, "hello");
    EXPECT_EQ(source->send(listeners[0].get(), message), 0);
    source->broadcast(message);
    EXPECT_THAT(MVR::Log::getText(),
                HasSubstr("source is sending message to a: \"hello\" (wParam=1, lParam=-2)"));
    EXPECT_THAT(MVR::Log::getText(),
                HasSubstr("source is broadcasting message: \"hello\" (wParam=1, lParam=-2)"));
}

TEST(MessageNodeContract, TheOrderOfOperationsIsFrozen) {
    MVR::Testing::expectSlots("node", 0, &MessageNode::setName, &MessageNode::receive,
                              &MessageNode::send, &MessageNode::broadcast, &MessageNode::listenTo,
                              &MessageNode::stopListeningTo, &MessageNode::getName,
                              &MessageNode::getSourceCount, &MessageNode::getSource,
                              &MessageNode::getListenerCount, &MessageNode::getListener,
                              &MessageNode::hasListener, &MessageNode::isListeningTo);
}

} // namespace
