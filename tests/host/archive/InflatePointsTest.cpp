#include "host/archive/InflatePoints.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/host/archive/ZipBuilder.h"

namespace olmhost::test {

namespace {

// Inflates up to `position`, in a stream of zeros.
void inflateTo(Inflater& inflater, const std::string& packed, std::uint64_t position) {
    std::byte output[65536];
    while (inflater.made() < position) {
        const auto left = std::min<std::uint64_t>(sizeof output, position - inflater.made());
        const auto step = inflater.run(std::as_bytes(std::span(packed)).subspan(inflater.taken()),
                                       {output, left});
        ASSERT_GT(step.made, 0U);
    }
}

} // namespace

TEST(InflatePointsTest, ReturnsTheLastPointOfTheEntryAtOrBeforeThePosition) {
    const std::string packed = deflated(std::string(4 << 20, '\0'));
    InflatePoints points;
    Inflater inflater;
    for (const std::uint64_t place : {500000U, 1500000U, 1600000U, 3200000U}) {
        inflateTo(inflater, packed, place);
        points.offer(5, inflater);
    }

    EXPECT_EQ(points.count(), 2U) << "one per stretch, none in the first";
    EXPECT_EQ(points.before(5, 1499999), nullptr);
    ASSERT_NE(points.before(5, 1500000), nullptr);
    EXPECT_EQ(points.before(5, 1500000)->made(), 1500000U);
    EXPECT_EQ(points.before(5, 3199999)->made(), 1500000U);
    EXPECT_EQ(points.before(5, 4000000)->made(), 3200000U);
    EXPECT_EQ(points.before(4, 4000000), nullptr);
    EXPECT_EQ(points.before(6, 4000000), nullptr);
}

TEST(InflatePointsTest, APointContinuesWhereItWasTaken) {
    const std::string plain = someText(3 << 20);
    const std::string packed = deflated(plain);
    InflatePoints points;
    Inflater inflater;
    inflateTo(inflater, packed, 1700001);
    points.offer(0, inflater);
    inflateTo(inflater, packed, 2900000);

    inflater = *points.before(0, 2000000);

    ASSERT_EQ(inflater.made(), 1700001U);
    std::string output(50000, '\0');
    const auto step = inflater.run(std::as_bytes(std::span(packed)).subspan(inflater.taken()),
                                   std::as_writable_bytes(std::span(output)));
    EXPECT_EQ(step.made, output.size());
    EXPECT_TRUE(output == plain.substr(1700001, output.size()));
}

TEST(InflatePointsTest, NeverHoldsMoreThanItsLimitAndThinsOutEvenly) {
    constexpr std::uint64_t spacing = 1000;
    constexpr std::size_t most = 40;
    constexpr std::uint64_t entries = 4;
    constexpr std::uint64_t stretches = 25; // of each entry, of the first spacing
    const std::string packed = deflated(someText((stretches + 1) * spacing));
    InflatePoints points(spacing, most);

    for (std::uint64_t entry = 0; entry < entries; ++entry) {
        Inflater inflater;
        for (std::uint64_t stretch = 1; stretch <= stretches; ++stretch) {
            inflateTo(inflater, packed, stretch * spacing);
            points.offer(entry, inflater);
            ASSERT_LE(points.count(), most);
        }
    }

    EXPECT_GE(points.count(), entries * (stretches / 4 - 1)) << "spacing doubled twice, no more";
    for (std::uint64_t entry = 0; entry < entries; ++entry) {
        for (std::uint64_t place = 8 * spacing; place < stretches * spacing; place += spacing) {
            const Inflater* point = points.before(entry, place);
            ASSERT_NE(point, nullptr) << place;
            EXPECT_LE(point->made(), place);
            EXPECT_GE(point->made() + 8 * spacing, place);
        }
    }
}

} // namespace olmhost::test
