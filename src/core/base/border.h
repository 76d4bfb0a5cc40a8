// The border to the code of others: tools, drivers, adaptors.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

namespace MVR {

/// Each call into somebody else's code passes through here: it counts as open until it returns, and
/// what it throws ends here, in a line of the log. Host thread only; each library that compiles
/// this counts its own calls.
class Border {
public:
    /// A call, or a loop that runs the host's events, from construction to destruction.
    class OpenCall {
    public:
        OpenCall() { ++openCalls_; }
        OpenCall(const OpenCall&) = delete;
        OpenCall& operator=(const OpenCall&) = delete;
        ~OpenCall() { --openCalls_; }
    };

    /// Returns true while a call is open: then what is on the stack may still be in use.
    [[nodiscard]] static bool isCallOpen() { return openCalls_ > 0; }

    /// Runs `call`, which makes the call `operation`. Returns false if it threw; then the log has
    /// what `who` returns, such as "The adaptor", the operation and the reason.
    template <class Who, class Call>
    static bool call(const Who& who, std::string_view operation, const Call& call) {
        const OpenCall open;
        try {
            call();
            return true;
        } catch (const std::exception& thrown) {
            logThrown(who(), operation, thrown.what());
        } catch (...) {
            logThrown(who(), operation, "something that tells no reason");
        }
        return false;
    }

    /// The same for a call that answers. Returns `ifThrown` if it threw.
    template <class Answer, class Who, class Call>
    static Answer ask(const Who& who, std::string_view operation, Answer ifThrown,
                      const Call& ask) {
        (void)call(who, operation, [&] { ifThrown = ask(); });
        return ifThrown;
    }

    /// The same for calls of a scene node.
    template <class Call>
    static bool callNode(std::string_view operation, const Call& nodeCall) {
        return call([] { return "A scene node"; }, operation, nodeCall);
    }

private:
    static void logThrown(const std::string& who, std::string_view operation, const char* reason);

    inline static std::int32_t openCalls_ = 0;
};

} // namespace MVR
