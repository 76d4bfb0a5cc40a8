#pragma once

#include <lo/lo.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <string>

/// Sends raw datagrams to a port of this machine. On its loopback they have arrived when `send`
/// returns.
class UdpSender {
public:
    explicit UdpSender(std::int32_t port) : handle_(socket(AF_INET, SOCK_DGRAM, 0)) {
        target_.sin_family = AF_INET;
        target_.sin_port = htons(static_cast<std::uint16_t>(port));
        target_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    }
    UdpSender(const UdpSender&) = delete;
    UdpSender& operator=(const UdpSender&) = delete;
    ~UdpSender() { close(handle_); }

    void send(const std::string& bytes) const {
        sendto(handle_, bytes.data(), bytes.size(), 0, reinterpret_cast<const sockaddr*>(&target_),
               sizeof target_);
    }

private:
    int handle_;
    sockaddr_in target_{};
};

/// A message with arguments of the given types.
template <class... Arguments>
std::string oscMessage(const std::string& address, const std::string& types,
                       Arguments... arguments) {
    lo_message message = lo_message_new();
    // The function behind the library's macro, which accepts the end marks only in the call itself.
    lo_message_add_internal(message, __FILE__, __LINE__, types.c_str(), arguments..., LO_MARKER_A,
                            LO_MARKER_B);
    std::size_t size = 0;
    void* bytes = lo_message_serialise(message, address.c_str(), nullptr, &size);
    std::string text(static_cast<char*>(bytes), size);
    std::free(bytes);
    lo_message_free(message);
    return text;
}

/// A bundle of messages or bundles.
inline std::string oscBundle(std::initializer_list<std::string> elements) {
    std::string bundle("#bundle\0\x7f\0\0\0\0\0\0\1", 16); // a time tag far in the future
    for (const std::string& element : elements) {
        const std::uint32_t size = htonl(static_cast<std::uint32_t>(element.size()));
        bundle.append(reinterpret_cast<const char*>(&size), 4).append(element);
    }
    return bundle;
}
