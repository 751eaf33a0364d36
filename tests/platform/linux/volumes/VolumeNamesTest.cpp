#include "platform/linux/volumes/VolumeNames.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tessaly {

namespace {

using Volumes = std::vector<VolumeNames::Volume>;
using Names = std::vector<std::string>;

Names namesOf(VolumeNames &names, const Volumes &volumes)
{
    names.assign(volumes);
    Names all;
    for (const auto &volume : volumes) {
        all.push_back(names.nameOf(volume.device, volume.mountPoint).value_or("none"));
    }
    return all;
}

TEST(VolumeNames, areLabelsOrElseLastComponents)
{
    VolumeNames names;
    EXPECT_EQ(
        namesOf(names, {{1, "/", "root"}, {2, "/media/me/1234", "My Disk"}, {3, "/srv/data", ""}}),
        (Names{"/", "My Disk", "data"}));
}

TEST(VolumeNames, haveNoSlash)
{
    VolumeNames names;
    EXPECT_EQ(namesOf(names, {{1, "/a", "/boot"},
                              {2, "/b", "x/y"},
                              {3, "/c", "/"},
                              {4, "/d", "//"},
                              {5, "/e", "end/"}}),
              (Names{"boot", "x-y", "c", "d", "end"}));
}

TEST(VolumeNames, areBytes)
{
    VolumeNames names;
    EXPECT_EQ(namesOf(names, {{1, "/a", "\xff\n"}, {2, "/mnt/\xfe", ""}}),
              (Names{"\xff\n", "\xfe"}));
}

TEST(VolumeNames, areToldApartBySuffixes)
{
    VolumeNames names;
    EXPECT_EQ(namesOf(names, {{1, "/a/data", ""}, {2, "/b", "data"}, {3, "/c", "data"}}),
              (Names{"data", "data 2", "data 3"}));
}

TEST(VolumeNames, giveNoSuffixThatIsAnotherOnesName)
{
    VolumeNames names;
    EXPECT_EQ(namesOf(names, {{1, "/a", "data"}, {2, "/b", "data"}, {3, "/c", "data 2"}}),
              (Names{"data", "data 3", "data 2"}));
}

TEST(VolumeNames, stayWhateverBecomesOfOthers)
{
    VolumeNames names;
    (void)namesOf(names, {{1, "/a", "data"}, {2, "/b", "data"}});

    EXPECT_EQ(namesOf(names, {{2, "/b", "data"}}), Names{"data 2"});
    EXPECT_EQ(namesOf(names, {{3, "/c", "data"}, {2, "/b", "data"}}), (Names{"data", "data 2"}));
    EXPECT_EQ(namesOf(names, {{3, "/c", "data"}, {2, "/b", "data"}, {1, "/a", "data"}}),
              (Names{"data", "data 2", "data 3"}));
}

TEST(VolumeNames, changeWithTheLabel)
{
    VolumeNames names;
    (void)namesOf(names, {{1, "/a", ""}, {2, "/b", "data"}});

    EXPECT_EQ(namesOf(names, {{1, "/a", "data"}, {2, "/b", "data"}}), (Names{"data 2", "data"}));
    EXPECT_EQ(namesOf(names, {{1, "/a", "other"}, {2, "/b", "data"}}), (Names{"other", "data"}));
}

TEST(VolumeNames, areForgottenWithTheVolume)
{
    VolumeNames names;
    (void)namesOf(names, {{1, "/a", "data"}});

    EXPECT_EQ(names.nameOf(1, "/b"), std::nullopt);
    EXPECT_EQ(names.nameOf(2, "/a"), std::nullopt);
    names.assign({});
    EXPECT_EQ(names.nameOf(1, "/a"), std::nullopt);
}

} // namespace

} // namespace tessaly
