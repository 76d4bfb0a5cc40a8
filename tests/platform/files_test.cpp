#include "platform/sdk/files.h"

#include "support/full_disk.h"
#include "temporary_folder.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace MVR::Platform;
namespace fs = std::filesystem;

namespace {

std::string listed(const std::string& pattern) {
    std::string names;
    for (const FoundFile& file : listFiles(pattern))
        names += file.name + (file.isFolder ? "/ " : " ");
    return names;
}

TEST(Files, PathsFoldToWhatIsThere) {
    TemporaryFolder folder;
    const std::string& root = folder.path;
    folder.add("Data/Core/Core.log");
    for (const char* name : {"core.LOG", "CORE.log", "Core.log", "coRE.log"})
        folder.add(std::string("Data/") + name);
    struct Case {
        std::string written, folded;
    };
    const Case cases[] = {
        {root + "data\\CORE\\\\core.log", root + "Data/Core/Core.log"},
        {root + "Data/core.LOG", root + "Data/core.LOG"},           // the exact name first
        {root + "Data/core.log", root + "Data/CORE.log"},           // else the first in byte order
        {root + "DATA//new\\File.txt", root + "Data/new/File.txt"}, // a missing name stays
        {root + "data\\core\\", root + "Data/Core/"},
        {root + "data/core/core.log/below", root + "Data/Core/Core.log/below"},
        {"\\\\", "/"},
        {"", ""},
        {std::string("a\0b", 3), ""},
    };
    for (const Case& each : cases)
        EXPECT_EQ(foldPath(each.written), each.folded) << each.written;
    const std::string before = currentFolder();
    EXPECT_TRUE(setCurrentFolder(root + "data"));
    EXPECT_EQ(foldPath("core\\core.LOG"), "Core/Core.log");
    EXPECT_TRUE(fileExists("CORE\\CORE.log"));
    EXPECT_FALSE(fileExists("core"));
    EXPECT_FALSE(setCurrentFolder("missing"));
    EXPECT_TRUE(setCurrentFolder(before));
    EXPECT_EQ(currentFolder(), before);
}

TEST(Files, ListsByWildcardInByteOrder) {
    TemporaryFolder folder;
    for (const char* name : {"b.prm", "Z.PRM", "a.prm.bak", ".x.so", "noext", "\xC3\xA4.prm"})
        folder.add(name);
    EXPECT_TRUE(createFolder(folder.path + "\\sub.prm\\"));
    EXPECT_TRUE(createFolder(folder.path + "SUB.prm")); // is there already
    EXPECT_FALSE(createFolder(folder.path + "no/sub"));
    EXPECT_EQ(lastFileError(), "No such file or directory");
    EXPECT_FALSE(createFolder(folder.path + "noext"));

    EXPECT_EQ(listed(folder.path + "*.prm"), "Z.PRM b.prm sub.prm/ \xC3\xA4.prm ");
    EXPECT_EQ(listed(folder.path + "\\*.so"), ".x.so ");
    EXPECT_EQ(listed(folder.path + "?.p*m"), "Z.PRM b.prm ");
    EXPECT_EQ(listed(folder.path + "*.*").size(), listed(folder.path + "*").size());
    EXPECT_EQ(listed(folder.path + "*e*t*"), "noext ");
    EXPECT_EQ(listed(folder.path + "missing/*"), "");
    EXPECT_EQ(listed(folder.path + "noext/*"), "");
    // Many stars over a long name must not run for ever.
    folder.add(std::string(200, 'a'));
    EXPECT_EQ(listed(folder.path + "a*a*a*a*a*a*a*a*a*a*a*a*a*b"), "");
}

TEST(Files, BytesComeBackAsTheyWereWritten) {
    TemporaryFolder folder;
    std::string bytes(300000, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = char(i * 7 % 256);
    std::string read = "kept";
    for (const std::string& content : {bytes, std::string(), std::string("\r\n\0x", 4)}) {
        ASSERT_TRUE(writeFileAtomic(folder.path + "file", content));
        ASSERT_TRUE(readFile(folder.path + "FILE", read));
        EXPECT_TRUE(read == content);
        EXPECT_TRUE(readFile(folder.path + "file", read, content.size()));
        EXPECT_TRUE(content.empty() || !readFile(folder.path + "file", read, content.size() - 1));
    }
    EXPECT_FALSE(readFile(folder.path + "missing", read));
    EXPECT_FALSE(readFile(folder.path, read));
    fs::resize_file(folder.add("sparse"), kLargestFileBytes + 1);
    EXPECT_FALSE(readFile(folder.path + "sparse", read));
    EXPECT_EQ(lastFileError(), "File too large");
    EXPECT_EQ(read.size(), 4u);
    EXPECT_TRUE(deleteFile(folder.path + "File"));
    EXPECT_FALSE(deleteFile(folder.path + "file"));
}

TEST(Files, WritingKeepsPermissionsAndWritesThroughLinks) {
    TemporaryFolder folder;
    const std::string target = folder.add("real/target.xml", "old");
    fs::permissions(target, fs::perms(0640));
    fs::create_symlink("real/target.xml", folder.path + "link");
    fs::create_symlink("link", folder.path + "link2");
    fs::create_symlink("real/new.xml", folder.path + "dangling");
    fs::create_symlink("loop", folder.path + "loop");
    ASSERT_TRUE(writeFileAtomic(folder.path + "link2", "new"));
    EXPECT_EQ(folder.read("real/target.xml"), "new");
    EXPECT_EQ(fs::status(target).permissions(), fs::perms(0640));
    EXPECT_TRUE(fs::is_symlink(folder.path + "link2"));
    ASSERT_TRUE(writeFileAtomic(folder.path + "dangling", "made"));
    EXPECT_EQ(folder.read("real/new.xml"), "made");

    // A pipe can't be replaced, so it is written to.
    const std::string pipe = folder.path + "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    EXPECT_TRUE(writeFileAtomic(pipe, "x"));
    char received = 0;
    EXPECT_EQ(read(reader, &received, 1), 1);
    EXPECT_EQ(received, 'x');
    EXPECT_TRUE(fs::is_fifo(pipe));
    close(reader);

    EXPECT_EQ(canonicalPath(folder.path + "REAL\\..\\link2"), canonicalPath(target));
    EXPECT_EQ(canonicalPath(folder.path + "loop") + canonicalPath(folder.path + "none"), "");
    for (const FoundFile& file : listFiles(folder.path + "*"))
        EXPECT_EQ(file.isRegular, file.name.find("link") == 0 || file.name == "dangling")
            << file.name;

    EXPECT_FALSE(writeFileAtomic(folder.path + "loop", "x"));
    EXPECT_FALSE(writeFileAtomic(folder.path + "real", "x"));
    EXPECT_FALSE(writeFileAtomic(folder.path + "no/file", "x"));
    EXPECT_FALSE(writeFileAtomic("", "x"));
    EXPECT_TRUE(writeFileAtomic(folder.path + std::string(255, 'n'), "longest name"));
    EXPECT_EQ(listed(folder.path + ".mvr*") + listed(folder.path + "real/.mvr*"), "");
}

TEST(Files, AFullDiskLeavesTheOldFileAndNothingElse) {
    TemporaryFolder folder;
    folder.add("take.xml", "old");
    {
        const MVR::Testing::FullDisk disk(100000);
        EXPECT_FALSE(writeFileAtomic(folder.path + "take.xml", std::string(200000, 'x')));
        EXPECT_EQ(lastFileError(), "File too large");
    }
    EXPECT_EQ(listed(folder.path + "*"), "take.xml ");
    EXPECT_EQ(folder.read("take.xml"), "old");
}

TEST(Files, AKillInMidWriteLeavesTheOldFileOrTheNew) {
    TemporaryFolder folder;
    const std::string old(1000, 'o');
    const std::string next(8000000, 'n');
    int killedInside = 0;
    for (int round = 0; round < 200 && killedInside < 4; ++round) {
        folder.add("take.xml", old);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
            _exit(writeFileAtomic(folder.path + "take.xml", next) ? 0 : 1);
        while (listFiles(folder.path + ".mvr*").empty() && waitpid(child, nullptr, WNOHANG) == 0) {
        }
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const std::string found = folder.read("take.xml");
        EXPECT_TRUE(found == old || found == next);
        killedInside += found == old;
        if (found == next)
            continue;
        EXPECT_NE(listed(folder.path + ".mvr*"), "");
        // Files of those who live, of nobody, and one that another machine locks.
        const std::string own = ".mvr-" + std::to_string(getpid()) + "-99.tmp";
        const std::string dead = ".mvr-" + std::to_string(child);
        for (const std::string& name : {own, dead + "-8.txt", dead + "-9.tmp"})
            folder.add(name, "");
        const int locked = open((folder.path + dead + "-9.tmp").c_str(), O_RDONLY);
        ASSERT_EQ(flock(locked, LOCK_EX), 0);
        EXPECT_TRUE(writeFileAtomic(folder.path + "other.xml", "x"));
        EXPECT_EQ(listFiles(folder.path + ".mvr*").size(), 3U);
        close(locked);
        EXPECT_TRUE(writeFileAtomic(folder.path + "other.xml", "x"));
        EXPECT_EQ(listFiles(folder.path + ".mvr*").size(), 2U);
        deleteFile(folder.path + own);
        deleteFile(folder.path + dead + "-8.txt");
    }
    EXPECT_GT(killedInside, 0) << "no write was slow enough to be killed";
}

} // namespace
