#pragma once

#include <string>

/// The options of the command line.
struct Options {
    bool help = false;
    bool version = false;
    bool loop = false;
    bool quiet = false;
    std::string file; ///< empty for the bundled movement
    std::string host = "127.0.0.1";
    std::string prefix = "/camera";
    int port = 9000;
    double speed = 1.0;
    double seconds = 0.0; ///< 0 for all of the movement
    double startDelaySeconds = 0.0;
};

/// Returns false, with what is wrong in `error`, on failure.
[[nodiscard]] bool readOptions(int count, char** words, Options& out, std::string& error);

extern const char kHelp[];
