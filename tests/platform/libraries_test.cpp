#include "platform/libraries.h"

#include "platform/sdk/files.h"
#include "temporary_folder.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace MVR::Platform;

namespace {

template <typename Function>
Function* find(LibraryHandle library, const char* name) {
    return reinterpret_cast<Function*>(findFunction(library, name));
}

TEST(Libraries, LoadFromAFolderKnowTheirPathAndUnload) {
    TemporaryFolder folder;
    std::filesystem::copy_file(PLATFORM_SAMPLE_LIBRARY, folder.path + "Sample.so");
    const std::string before = currentFolder();
    ASSERT_TRUE(setCurrentFolder(folder.path));
    const LibraryHandle library = loadLibrary("sample.SO");
    ASSERT_NE(library, nullptr) << lastLibraryError();
    std::string path;
    find<void(std::string*)>(library, "askOwnModulePath")(&path);
    ASSERT_TRUE(setCurrentFolder(before));
    EXPECT_EQ(path, std::filesystem::canonical(folder.path + "Sample.so"));
    EXPECT_EQ(find<void*()>(library, "askOwnModule")(), library);
    EXPECT_NE(ownModule(), library);
    EXPECT_NE(ownModulePath(), path);

    EXPECT_EQ(find<int()>(library, "countCalls")(), 1);
    EXPECT_EQ(findFunction(library, "getVersion"), nullptr);
    EXPECT_NE(lastLibraryError(), "");
    freeLibrary(library);
    const LibraryHandle again = loadLibrary(folder.path + "\\Sample.so");
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(find<int()>(again, "countCalls")(), 1) << "it had not been unloaded";
    freeLibrary(again);
}

TEST(Libraries, HelpersBesideALibraryAreFound) {
    TemporaryFolder folder;
    for (const char* name : {"needy.so", "libhelper.so", "libdeeper.so"})
        std::filesystem::copy_file(std::string(PLATFORM_HELPERS "/") + name, folder.path + name);
    const LibraryHandle library = loadLibrary(folder.path + "needy.so");
    ASSERT_NE(library, nullptr) << lastLibraryError();
    EXPECT_EQ(find<int()>(library, "askHelper")(), 42);
    EXPECT_EQ(lastLibraryError(), "");
    freeLibrary(library);
    deleteFile(folder.path + "libdeeper.so");
    EXPECT_EQ(loadLibrary(folder.path + "needy.so"), nullptr);
    EXPECT_NE(lastLibraryError().find("libdeeper.so: "), std::string::npos);
    EXPECT_EQ(lastLibraryError(), "") << "told once";
}

TEST(Libraries, WhatIsNoneIsRefusedWithAReason) {
    TemporaryFolder folder;
    folder.add("text.so", "no library");
    folder.add("empty.so");
    for (const char* name : {"text.so", "empty.so", "missing.so", ""}) {
        EXPECT_EQ(loadLibrary(folder.path + name), nullptr) << name;
        EXPECT_NE(lastLibraryError(), "") << name;
    }
    // A copy that was cut short would end the process.
    std::filesystem::copy_file(PLATFORM_SAMPLE_LIBRARY, folder.path + "whole.so");
    const std::string whole = folder.read("whole.so");
    for (const std::size_t length : {whole.size() - 1, whole.size() / 2, std::size_t(70)}) {
        EXPECT_EQ(loadLibrary(folder.add("cut.so", whole.substr(0, length))), nullptr) << length;
        EXPECT_NE(lastLibraryError().find("cut.so: the file is cut short"), std::string::npos);
    }
    EXPECT_EQ(loadLibrary("libc.so.6"), nullptr) << "system folders are not searched";
    EXPECT_EQ(findFunction(nullptr, "getVersion"), nullptr);
    freeLibrary(nullptr);
}

} // namespace
