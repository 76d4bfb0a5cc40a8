#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// What the driver needs of the machine beyond the standard library.

/// A datagram socket that is read without waiting.
class UdpSocket {
public:
    UdpSocket() = default;
    UdpSocket(const UdpSocket&) = delete;
    UdpSocket& operator=(const UdpSocket&) = delete;
    ~UdpSocket() { close(); }

    /// Listens on a numeric address and a port, 0 for any that is free. Returns false, with nothing
    /// open and the system's words in `error`, on failure.
    [[nodiscard]] bool open(const std::string& address, std::int32_t port, std::string& error);
    void close();
    [[nodiscard]] bool isOpen() const { return handle_ >= 0; }

    /// Returns the port that the socket listens on, or 0 if it is closed.
    [[nodiscard]] std::int32_t port() const;

    /// Reads one datagram, cut to `capacity`. Returns its size, or -1 if none waits.
    std::ptrdiff_t receive(char* buffer, std::size_t capacity);

private:
    int handle_ = -1;
};

/// Returns the folder that this library was loaded from, without a separator at its end, or "." if
/// unknown.
std::string ownLibraryFolder();
