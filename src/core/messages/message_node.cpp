#include "core/messages/sdk/message_node.h"

#include "core/base/error_codes.h"
#include "core/base/sdk/log.h"

#include <algorithm>
#include <new>
#include <utility>

namespace MVR::Util {

namespace {

using Nodes = std::vector<MessageNode*>;

// Links tend to end in the reverse order in which they were made, so the search starts at the end.
Nodes::const_iterator findLast(const Nodes& nodes, const MessageNode* node) {
    for (auto position = nodes.end(); position != nodes.begin();)
        if (*--position == node)
            return position;
    return nodes.end();
}

MessageNode* nodeAt(const Nodes& nodes, std::int32_t index) {
    if (index < 0 || static_cast<std::size_t>(index) >= nodes.size())
        return nullptr;
    return nodes[static_cast<std::size_t>(index)];
}

} // namespace

// A broadcast under way, or a message whose handler may destroy the node. The walk goes backwards,
// so listeners that are added meanwhile stay out of it. When the node loses a listener that is
// still to be called, it corrects the count.
struct MessageNode::Walk {
    explicit Walk(MessageNode* sender)
        : node(sender), outer(sender->walks_), remaining(sender->listeners_.size()) {
        // Laundered: GCC warns of the local's address, since it can't see the destructor remove it.
        node->walks_ = std::launder(this);
    }
    ~Walk() {
        if (node != nullptr)
            node->walks_ = outer;
    }
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;

    MessageNode* node; // null once the node is gone
    Walk* outer;
    std::size_t remaining;
};

MessageNode::MessageNode(std::string name) : name_(std::move(name)) {}

MessageNode::~MessageNode() {
    Message farewell(StopBroadcasting, 0, reinterpret_cast<std::intptr_t>(this),
                     "Stop broadcasting");
    MessageNode::broadcast(farewell);
    while (!sources_.empty())
        if (MessageNode::stopListeningTo(sources_.back()) != 0)
            sources_.pop_back();
    while (!listeners_.empty())
        if (listeners_.back()->stopListeningTo(this) != 0)
            listeners_.pop_back();
    for (Walk* walk = walks_; walk != nullptr; walk = walk->outer) {
        walk->node = nullptr;
        walk->remaining = 0;
    }
}

void MessageNode::setName(std::string name) {
    name_ = std::move(name);
}

void MessageNode::receive(Message&, bool) {}

std::int32_t MessageNode::send(MessageNode* node, Message& message) {
    if (node == nullptr)
        return ErrorCode::instance()->report(Codes::kNull.identifier);
    message.sender = this;
    if (Log::getThreshold() >= Log::Trace)
        trace(" is sending message to " + node->getName() + ": ", message);
    node->receive(message, false);
    return 0;
}

void MessageNode::broadcast(Message& message) {
    message.sender = this;
    if (Log::getThreshold() >= Log::Trace)
        trace(" is broadcasting message: ", message);
    if (listeners_.size() == 1) { // nothing is read after the call
        listeners_.front()->receive(message, true);
        return;
    }
    Walk walk(this);
    while (walk.remaining > 0)
        listeners_[--walk.remaining]->receive(message, true);
}

std::int32_t MessageNode::listenTo(MessageNode* node) {
    if (node == nullptr)
        return ErrorCode::instance()->report(Codes::kNull.identifier);
    if (isListeningTo(node))
        return 0;
    if (node->hasListener(this))
        return reportCode(Codes::kLinkMismatch);
    sources_.push_back(node);
    node->listeners_.push_back(this);
    Message linked(NowListening, 0, 0, getName() + " is now listening to " + node->getName());
    return send(node, linked);
}

std::int32_t MessageNode::stopListeningTo(MessageNode* node) {
    if (node == nullptr)
        return ErrorCode::instance()->report(Codes::kNull.identifier);
    if (!MessageNode::isListeningTo(node))
        return reportCode(Codes::kNotListening);
    if (!node->MessageNode::hasListener(this))
        return ErrorCode::instance()->report(Codes::kLinkMismatch.identifier);
    Message leaving(StoppedListening, 0, 0,
                    getName() + " has stopped listening to " + node->getName());
    const Walk self(this);
    const std::int32_t code = send(node, leaving);
    if (self.node == nullptr) // the handler destroyed this node
        return code;
    const auto source = findLast(sources_, node);
    if (source != sources_.end()) { // the handler may have ended the link itself
        sources_.erase(source);
        node->removeListener(this);
    }
    return code;
}

void MessageNode::removeListener(const MessageNode* node) {
    const auto found = findLast(listeners_, node);
    if (found == listeners_.end())
        return;
    const auto index = static_cast<std::size_t>(found - listeners_.begin());
    listeners_.erase(found);
    for (Walk* walk = walks_; walk != nullptr; walk = walk->outer)
        if (index < walk->remaining)
            --walk->remaining;
}

std::string MessageNode::getName() const {
    return name_;
}

std::int32_t MessageNode::getSourceCount() const {
    return static_cast<std::int32_t>(sources_.size());
}

MessageNode* MessageNode::getSource(std::int32_t index) const {
    return nodeAt(sources_, index);
}

std::int32_t MessageNode::getListenerCount() const {
    return static_cast<std::int32_t>(listeners_.size());
}

MessageNode* MessageNode::getListener(std::int32_t index) const {
    return nodeAt(listeners_, index);
}

bool MessageNode::hasListener(const MessageNode* node) const {
    return findLast(listeners_, node) != listeners_.end();
}

bool MessageNode::isListeningTo(const MessageNode* node) const {
    return findLast(sources_, node) != sources_.end();
}

void MessageNode::trace(const std::string& what, const Message& message) const {
    Log(Log::Trace)
        .write(getName() + what + '"' + message.text +
                   "\" (wParam=" + std::to_string(message.wParam) +
                   ", lParam=" + std::to_string(message.lParam) + ')',
               Log::Trace);
}

} // namespace MVR::Util
