// What the nodes of the message network send to each other.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace MVR::Util {

class MessageNode;

/// Numbers of the messages that every node sends by itself.
enum LinkMessage : std::int32_t {
    NowListening = -1,     ///< from a listener to its source, when the link was made
    StoppedListening = -2, ///< from a listener to its source, while the link still exists
    StopBroadcasting = -3, ///< from a node to its listeners, in its destructor; lParam is the node
};

/// A message. Its sender builds it on the stack; it is valid for the duration of the call.
class Message {
public:
    explicit Message(std::int32_t messageId, std::uint32_t first = 0, std::intptr_t second = 0,
                     std::string messageText = {})
        : id(messageId), text(std::move(messageText)), wParam(first), lParam(second) {}
    virtual ~Message() = default;

    MessageNode* sender = nullptr; ///< filled in by `send` and `broadcast`
    std::int32_t id;               ///< positive for what the application means
    std::string text;              ///< for tracing and in the link messages; mostly empty
    std::uint32_t wParam;          ///< first argument, meaning by id
    std::intptr_t lParam;          ///< second argument, meaning by id; often the sender's data
};

} // namespace MVR::Util
