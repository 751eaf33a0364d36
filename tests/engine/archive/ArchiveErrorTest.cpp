#include "engine/archive/ArchiveError.hpp"

#include <gtest/gtest.h>

#include <cerrno>

namespace tessaly::archive {

using Kind = ArchiveError::Kind;

TEST(ArchiveError, theTextNamesThePlaceWhenThereIsOne)
{
    EXPECT_EQ((ArchiveError{Kind::damaged, "a hole", 233}).text(), "byte 233: a hole");
    EXPECT_EQ((ArchiveError{Kind::damaged, "a hole", 0}).text(), "byte 0: a hole");
    EXPECT_EQ((ArchiveError{Kind::damaged, "a hole", {}}).text(), "a hole");
}

TEST(ArchiveError, aFailedCallIsToldInWords)
{
    const ArchiveError error = systemError(Kind::unwritable, "cannot write f", ENOSPC);

    EXPECT_EQ(error.kind, Kind::unwritable);
    EXPECT_EQ(error.text(), "cannot write f: No space left on device");
}

TEST(ArchiveError, aFailureCarriesTheError)
{
    const ArchiveFailure failure(Kind::truncated, "too short", 7);

    EXPECT_EQ(failure.error().kind, Kind::truncated);
    EXPECT_EQ(failure.error().offset, 7U);
    EXPECT_STREQ(failure.what(), "too short");
}

} // namespace tessaly::archive
