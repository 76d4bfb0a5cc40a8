#include "machine.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// What a busy sender sends in a second; the system may grant less.
constexpr int kReceiveBufferBytes = 1 << 20;

struct AddressList {
    addrinfo* first = nullptr;
    ~AddressList() {
        if (first)
            freeaddrinfo(first);
    }
};

} // namespace

bool UdpSocket::open(const std::string& address, std::int32_t port, std::string& error) {
    close();
    addrinfo wanted{};
    wanted.ai_family = AF_UNSPEC;
    wanted.ai_socktype = SOCK_DGRAM;
    wanted.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV | AI_PASSIVE; // never asks a name server
    AddressList found;
    const int code =
        getaddrinfo(address.c_str(), std::to_string(port).c_str(), &wanted, &found.first);
    if (code != 0) {
        error = gai_strerror(code);
        return false;
    }
    handle_ = socket(found.first->ai_family, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (handle_ < 0 || bind(handle_, found.first->ai_addr, found.first->ai_addrlen) != 0) {
        error = std::strerror(errno);
        close();
        return false;
    }
    setsockopt(handle_, SOL_SOCKET, SO_RCVBUF, &kReceiveBufferBytes, sizeof kReceiveBufferBytes);
    return true;
}

void UdpSocket::close() {
    if (handle_ >= 0) {
        ::close(handle_);
        handle_ = -1;
    }
}

std::int32_t UdpSocket::port() const {
    sockaddr_storage own{};
    socklen_t size = sizeof own;
    char text[NI_MAXSERV] = "0";
    if (isOpen() && getsockname(handle_, reinterpret_cast<sockaddr*>(&own), &size) == 0) {
        getnameinfo(reinterpret_cast<sockaddr*>(&own), size, nullptr, 0, text, sizeof text,
                    NI_NUMERICSERV | NI_DGRAM);
    }
    return std::atoi(text);
}

std::ptrdiff_t UdpSocket::receive(char* buffer, std::size_t capacity) {
    if (!isOpen())
        return -1;
    ssize_t size = 0;
    do {
        size = recv(handle_, buffer, capacity, 0);
    } while (size < 0 && errno == EINTR);
    return size;
}

std::string ownLibraryFolder() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&ownLibraryFolder), &info) == 0 || !info.dli_fname)
        return ".";
    const std::string path = info.dli_fname;
    const std::size_t end = path.rfind('/');
    return end == std::string::npos ? "." : path.substr(0, end);
}
