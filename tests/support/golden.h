#pragma once

#include "support/temp_home.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace MVR::Testing {

/// Compares `text` with a file, or with MIRVANE_WRITE_GOLDEN set writes the file instead.
inline void expectGolden(const std::string& path, const std::string& text) {
    if (std::getenv("MIRVANE_WRITE_GOLDEN") != nullptr)
        std::ofstream(path, std::ios::binary) << text;
    EXPECT_EQ(text, readText(path)) << path;
}

} // namespace MVR::Testing
