#include "tests/stage/command_run.h"

#include <chrono>
#include <iostream>

namespace Stage {
namespace {

/// Eight scenes in two folders that all differ, and a list of them.
class Farm : public CommandRun {
protected:
    void SetUp() override {
        CommandRun::SetUp();
        setenv("MIRVANE_STAGE", STAGE, 1);
        ASSERT_EQ(run(STAGE " record --documents . --countdown 0 --seconds 0.4 --rate 500"
                            " --tool 'Free Camera' --set 'Move X.offset=5' --scene first.scene;"
                            " mkdir -p 'in a' b; for i in 1 2 3 4; do"
                            " sed \"s/<offset>5</<offset>$i</\" first.scene >\"in a/$i.scene\";"
                            " sed \"s/<offset>5</<offset>-$i</\" first.scene >b/$i.scene; done;"
                            " ls 'in a'/*.scene b/*.scene >shots.txt; mkdir tmp"),
                  0)
            << read("stderr");
        setenv("TMPDIR", (folder.path + "tmp").c_str(), 1);
    }
    void TearDown() override { unsetenv("TMPDIR"); }

    /// Runs the jobs; prints how long that took.
    int timed(const char* what, const std::string& command) {
        const auto begin = std::chrono::steady_clock::now();
        const int code = run(command);
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
        std::cout << what << ": " << seconds.count() << " s\n";
        return code;
    }
    const std::string all = "parallel --will-cite --joblog jobs.log " FARM "shot.sh {} out "
                            "--set \"'Move Y.offset=1'\" :::: shots.txt";
};

TEST_F(Farm, ManyAtATimeGiveTheSameBytesAsOneAfterTheOther) {
    ASSERT_EQ(timed("one after the other",
                    "while read -r scene; do " FARM "shot.sh \"$scene\" one --set 'Move Y.offset=1'"
                    " || exit 9; done <shots.txt"),
              0)
        << read("stderr");
    ASSERT_EQ(timed("GNU parallel", all), 0) << read("stderr");
    EXPECT_EQ(run("diff -r one out && find out -name '*.csv' | xargs -d '\\n' sha1sum |"
                  " cut -c-40 | sort -u | wc -l"),
              0);
    EXPECT_EQ(read("stdout"), "8\n") << "all of them, and no two alike";
    EXPECT_EQ(run("find tmp -mindepth 1"), 0);
    EXPECT_EQ(read("stdout"), "") << "documents are temporary";
}

TEST_F(Farm, JobsThatFailOrAreKilledAreTheOnesToTryAgain) {
    // The first time, the stage is killed in one shot and stopped in another.
    folder.add("stage.sh", "#!/bin/bash\nif [ -e calm ]; then exec " STAGE " \"$@\"; fi\n"
                           "case $2 in b/2.scene) kill -KILL $$ ;; b/3.scene) exit 5 ;; esac\n"
                           "exec " STAGE " \"$@\"\n");
    setenv("MIRVANE_STAGE", (folder.path + "stage.sh").c_str(), 1);
    const std::string again = std::string(all).insert(all.find("--joblog"), "--resume-failed ");
    ASSERT_EQ(run("chmod +x stage.sh; " + all), 2);
    EXPECT_EQ(run("awk 'NR > 1 && $7 { print $7, $(NF - 4) }' jobs.log | sort"), 0);
    EXPECT_NE(read("stdout").find("137"), std::string::npos) << read("jobs.log");
    EXPECT_EQ(run("ls out/b/2.* out/b/3.csv; test -e out/b/1.csv -a -e 'out/in a/4.csv'"), 0);
    EXPECT_EQ(read("stdout"), "") << "no half a result";
    folder.add("before", "");
    ASSERT_EQ(run("touch calm; " + again), 0) << read("stderr");
    EXPECT_EQ(run("find out -name '*.csv' -newer before | sort"), 0);
    EXPECT_EQ(read("stdout"), "out/b/2.csv\nout/b/3.csv\n") << "no others";
}

} // namespace
} // namespace Stage
