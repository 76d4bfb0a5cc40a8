/// \file
/// The synchronous message network: a node sends to one other node, or broadcasts to all that
/// listen to it. Delivery is a plain call on the caller's stack.
#pragma once

#include "core/messages/sdk/message.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace MVR::Util {

/// A node of the network. The order of its operations is frozen. All of them may be called as long
/// as the node lives, from inside handlers too, but receive(), which send() and broadcast() call.
/// All calls come on the host's thread. Operations that return a code return 0 for success.
///
/// A node may be destroyed at any time, also by a handler that runs in its own broadcast: its
/// destructor tells the listeners with `StopBroadcasting` and cuts all links. Its most derived
/// parts are gone by then, so handlers may only compare its address.
class MessageNode {
public:
    explicit MessageNode(std::string name);
    MessageNode(const MessageNode&) = delete;
    MessageNode& operator=(const MessageNode&) = delete;

    virtual void setName(std::string name);
    /// The handler, for subclasses; `viaBroadcast` tells how the message came. Does nothing here.
    virtual void receive(Message& message, bool viaBroadcast);
    /// Delivers `message` to `node`, whose handler has ended when this returns. The code of "NULL"
    /// without a node.
    [[nodiscard]] virtual std::int32_t send(MessageNode* node, Message& message);
    /// Delivers `message` to all listeners, the last one first. A handler may stop listening, let
    /// others stop, add listeners (which get nothing this time) and destroy nodes, this one
    /// included: each listener that stays gets the message once.
    virtual void broadcast(Message& message);
    /// Makes this node a listener of `node`, which gets a `NowListening`. Nothing happens if it is
    /// one. The code of "NULL" without a node.
    [[nodiscard]] virtual std::int32_t listenTo(MessageNode* node);
    /// Sends `node` a `StoppedListening` and ends the link. The code of "NULL" without a node, of
    /// "MESSAGE_NOT_LISTENING" without a link.
    [[nodiscard]] virtual std::int32_t stopListeningTo(MessageNode* node);
    virtual std::string getName() const;
    virtual std::int32_t getSourceCount() const;
    /// Null if `index` is out of range.
    virtual MessageNode* getSource(std::int32_t index) const;
    virtual std::int32_t getListenerCount() const;
    /// Null if `index` is out of range.
    virtual MessageNode* getListener(std::int32_t index) const;
    virtual bool hasListener(const MessageNode* node) const;
    virtual bool isListeningTo(const MessageNode* node) const;
    virtual ~MessageNode();

private:
    struct Walk;

    void removeListener(const MessageNode* node);
    void trace(const std::string& what, const Message& message) const;

    std::string name_;
    // The two ends of each link; not owned.
    std::vector<MessageNode*> listeners_;
    std::vector<MessageNode*> sources_;
    Walk* walks_ = nullptr; // the broadcasts under way, innermost first; on their callers' stacks
};

} // namespace MVR::Util
