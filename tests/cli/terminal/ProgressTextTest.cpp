#include "cli/terminal/ProgressText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace olmkit {
namespace {

ProgressReport report(std::uint64_t done, std::uint64_t total, double rate = 0) {
    ProgressReport made;
    made.done = done;
    made.total = total;
    made.rate = rate;
    return made;
}

TEST(ProgressTextTest, BarFillsTheRoomThatTheFiguresLeave) {
    EXPECT_EQ(progressBar(report(1, 4, 1), "", 47),
              "[====>              ]  1 of 4  1.0/s  0:03 left");
    EXPECT_EQ(progressBar(report(0, 4), "", 24), "[>             ]  0 of 4");
    EXPECT_EQ(progressBar(report(4, 4), "", 24), "[==============]  4 of 4");
}

TEST(ProgressTextTest, BarOfMoreThanTheTotalIsFull) {
    EXPECT_EQ(progressBar(report(9, 4), "", 24), "[==============]  9 of 4");
}

TEST(ProgressTextTest, UnknownTotalHasNoBarAndNoTimeLeft) {
    EXPECT_EQ(progressBar(report(7, 0, 12), "", 80), "7 done  12/s");
}

TEST(ProgressTextTest, LabelComesFirstWhereItHasRoom) {
    EXPECT_EQ(progressBar(report(7, 0), "mail.olm", 16), "mail.olm  7 done");
    EXPECT_EQ(progressBar(report(7, 0), "mail.olm", 15), "7 done");
    EXPECT_EQ(progressBar(report(1, 2), "m.olm", 27), "m.olm  [=====>    ]  1 of 2");
    EXPECT_EQ(progressBar(report(1, 2), "m.olm", 26), "[========>       ]  1 of 2");
}

TEST(ProgressTextTest, WideSignsTakeTwoCellsOfTheRoom) {
    EXPECT_EQ(progressBar(report(7, 0), "小川", 12), "小川  7 done");
    EXPECT_EQ(progressBar(report(7, 0), "小川", 11), "7 done");
    EXPECT_EQ(progressBar(report(7, 0), "e\u0301", 9), "e\u0301  7 done");
}

TEST(ProgressTextTest, NoLineIsLongerThanTheWidth) {
    ProgressReport full = report(123456, 7000000, 987.6);
    full.bytes = 123'456'789;
    full.failed = 42;
    for (unsigned width = 0; width < 200; ++width) {
        EXPECT_LE(progressBar(full, "archive.olm", width).size(), width);
    }
    EXPECT_EQ(progressBar(full, "archive.olm", 60),
              "123456 of 7000000  988/s  123 MB  1:56:03 left  42 failed");
}

TEST(ProgressTextTest, SizesHaveTwoOrThreeDigits) {
    const auto shown = [](std::uint64_t bytes) {
        ProgressReport made = report(1, 0);
        made.bytes = bytes;
        return progressBar(made, "", 80);
    };
    EXPECT_EQ(shown(999), "1 done  999 B");
    EXPECT_EQ(shown(1000), "1 done  1.0 kB");
    EXPECT_EQ(shown(9949), "1 done  9.9 kB");
    EXPECT_EQ(shown(9950), "1 done  10 kB");
    EXPECT_EQ(shown(999'499), "1 done  999 kB");
    EXPECT_EQ(shown(999'500), "1 done  1.0 MB");
    EXPECT_EQ(shown(18'446'744'073'709'551'615U), "1 done  18446744 TB");
}

TEST(ProgressTextTest, TimeLeftIsRoundedUpToSeconds) {
    EXPECT_THAT(progressBar(report(0, 59, 1), "", 80), testing::HasSubstr("0:59 left"));
    EXPECT_THAT(progressBar(report(0, 599, 10), "", 80), testing::HasSubstr("1:00 left"));
    EXPECT_THAT(progressBar(report(0, 3600, 1), "", 80), testing::HasSubstr("1:00:00 left"));
    EXPECT_THAT(progressBar(report(0, 1'000'000'000, 0.1), "", 80),
                testing::HasSubstr("99:59:59 left"));
}

TEST(ProgressTextTest, JsonHasAllFiguresOnOneLine) {
    ProgressReport made = report(5, 20, 2.5);
    made.bytes = 1000;
    made.failed = 1;
    made.seconds = 2.00049;
    EXPECT_EQ(progressJson(made),
              R"({"done":5,"total":20,"bytes":1000,"failed":1,"seconds":2.0,"rate":2.5,)"
              R"("seconds_left":6.0,"finished":false})"
              "\n");
}

TEST(ProgressTextTest, UnknownFiguresAreNullInJson) {
    ProgressReport made;
    made.isFinished = true;
    EXPECT_EQ(progressJson(made),
              R"({"done":0,"total":null,"bytes":0,"failed":0,"seconds":0.0,"rate":0.0,)"
              R"("seconds_left":null,"finished":true})"
              "\n");
}

} // namespace
} // namespace olmkit
