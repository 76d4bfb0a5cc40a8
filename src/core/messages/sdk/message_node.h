// The synchronous message network: a node sends to one other node, or broadcasts to all that
// listen to it. Delivery is a plain call on the caller's stack.
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
/// A node may be destroyed at any time, even by a handler during its own broadcast: its destructor
/// tells the listeners with `StopBroadcasting` and cuts all links. Its most derived parts are gone
/// by then, so handlers may only compare its address.
class MessageNode {
public:
    explicit MessageNode(std::string name);
    MessageNode(const MessageNode&) = delete;
    MessageNode& operator=(const MessageNode&) = delete;

    virtual void setName(std::string name);
    /// Handles a message; subclasses override it, here it does nothing. `viaBroadcast` is false for
    /// `send`.
    virtual void receive(Message& message, bool viaBroadcast);
    /// Delivers `message` to `node`; its handler has run when this returns. Returns the code of
    /// "NULL" if `node` is null.
    [[nodiscard]] virtual std::int32_t send(MessageNode* node, Message& message);
    /// Delivers `message` to all listeners, the last one first. A handler may stop listening, make
    /// others stop, add listeners (which don't get this message) and destroy nodes, this one
    /// included. Each listener that stays gets the message once.
    virtual void broadcast(Message& message);
    /// Makes this node a listener of `node`, which gets a `NowListening`. Does nothing if it
    /// listens already. Returns the code of "NULL" if `node` is null.
    [[nodiscard]] virtual std::int32_t listenTo(MessageNode* node);
    /// Sends `node` a `StoppedListening` and ends the link. Returns the code of "NULL" if `node` is
    /// null, of "MESSAGE_NOT_LISTENING" if there is no link.
    [[nodiscard]] virtual std::int32_t stopListeningTo(MessageNode* node);
    virtual std::string getName() const;
    virtual std::int32_t getSourceCount() const;
    /// Returns null if `index` is out of range.
    virtual MessageNode* getSource(std::int32_t index) const;
    virtual std::int32_t getListenerCount() const;
    /// Returns null if `index` is out of range.
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
