#include "options.h"

#include <charconv>
#include <cmath>
#include <string_view>

const char kHelp[] =
    R"(Usage: mirvane-osc-sender [options]

Streams the movement of a camera as OSC messages over UDP, each sample at its own time.
Without --file it sends a generated hand-held movement of 30 seconds, 100 samples a second.

Each sample is one bundle of three messages; all values are doubles:
  PREFIX/position   x y z
  PREFIX/rotation   quaternion x y z w
  PREFIX/sent       monotonic clock of this machine in seconds, number of the sample from 0

  --file PATH        lines "time x y z qx qy qz qw", times in seconds; "#" begins a comment.
                     Equal and falling times, gaps and lost poses are accepted and counted
  --host ADDRESS     where to send to (127.0.0.1)
  --port NUMBER      1 to 65535 (9000)
  --prefix TEXT      start of the addresses (/camera)
  --speed FACTOR     0.001 to 1000: 2 sends twice as fast, 0.5 at half the pace (1)
  --seconds NUMBER   stop after this time, at most 1000000 (the whole movement)
  --loop             start again at the end, until --seconds or Ctrl+C
  --start-delay NUMBER   seconds to wait before the first sample, at most 1000000 (0)
  --quiet            print only errors
  --help, --version

Exit codes: 0 all was sent, or Ctrl+C; 1 sending failed; 2 wrong options; 3 bad motion file.
)";

namespace {

bool readNumber(std::string_view text, double least, double most, double& out) {
    double number = 0.0;
    const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (code != std::errc() || end != text.data() + text.size() || !(number >= least) ||
        !(number <= most))
        return false;
    out = number;
    return true;
}

constexpr double kLongestSeconds = 1e6;

// Sets an option with a value. Returns false if there is none of this name or the value is invalid.
bool setValue(std::string_view name, const std::string& value, Options& out) {
    if (name == "--file") {
        out.file = value;
        return !value.empty();
    }
    if (name == "--host") {
        out.host = value;
        return !value.empty();
    }
    if (name == "--prefix") {
        out.prefix = value;
        return value.size() > 1 && value.size() < 200 && value[0] == '/' && value.back() != '/' &&
               value.find_first_of(" #*,?[]{}") == std::string::npos;
    }
    if (name == "--port") {
        double port = 0.0;
        const bool fits = readNumber(value, 1, 65535, port) && port == std::floor(port);
        out.port = static_cast<int>(port);
        return fits;
    }
    if (name == "--speed")
        return readNumber(value, 0.001, 1000.0, out.speed);
    if (name == "--seconds")
        return readNumber(value, 0.0, kLongestSeconds, out.seconds) && out.seconds > 0.0;
    return name == "--start-delay" &&
           readNumber(value, 0.0, kLongestSeconds, out.startDelaySeconds);
}

} // namespace

bool readOptions(int count, char** words, Options& out, std::string& error) {
    for (int i = 1; i < count; ++i) {
        const std::string name = words[i];
        if (name == "--help" || name == "-h") {
            out.help = true;
        } else if (name == "--version") {
            out.version = true;
        } else if (name == "--loop") {
            out.loop = true;
        } else if (name == "--quiet") {
            out.quiet = true;
        } else if (i + 1 == count) {
            error = "unknown option, or its value is missing: " + name;
            return false;
        } else if (!setValue(name, words[++i], out)) {
            error = "unknown option, or its value doesn't fit: " + name + " " + words[i];
            return false;
        }
    }
    return true;
}
