#include "engine/scan/LinkTarget.hpp"

#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <functional>

#include <sys/stat.h>

namespace tessaly::scan {

namespace {

/// The two ways of following a link, which agree wherever nothing mounts itself.
struct Way {
    const char *name;
    std::function<bool(int folder, const char *link)> leadsToFolder;
};

bool carefully(int folder, const char *link)
{
    DescriptorBudget budget;
    DescriptorShare share(budget);
    return linkLeadsToFolderWithoutAutomount(folder, link, share);
}

} // namespace

class LinkTarget : public testing::TestWithParam<Way> {
protected:
    [[nodiscard]] bool leadsToFolder(const std::string &target) const
    {
        m_folder.link("link", target);
        const bool answer = GetParam().leadsToFolder(m_folder.descriptor(), "link");
        EXPECT_EQ(unlinkat(m_folder.descriptor(), "link", 0), 0);
        return answer;
    }

    const TemporaryFolder m_folder;
};

TEST_P(LinkTarget, isAFolder)
{
    m_folder.folder("s");
    m_folder.folder("s/t");
    m_folder.link("s/up", "..");

    for (const std::string &target :
         {std::string("s"), std::string("s/"), std::string("./s//t/."), std::string("."),
          std::string(".."), std::string("s/../s/up/s"), std::string("s/up"), m_folder.path("s"),
          m_folder.path("s/up/s/t"), std::string("/"), std::string("/.."), std::string("//")}) {
        EXPECT_TRUE(leadsToFolder(target)) << target;
    }
}

TEST_P(LinkTarget, isNoFolder)
{
    m_folder.folder("s");
    m_folder.file("file");
    m_folder.link("loop", "loop");
    m_folder.link("circle", "s/circle");
    m_folder.link("s/circle", "../circle");

    for (const std::string &target :
         {std::string("file"), std::string("file/"), std::string("file/."), std::string("file/.."),
          std::string("nowhere"), std::string("nowhere/.."), std::string("s/nowhere"),
          m_folder.path("file"), std::string("loop"), std::string("loop/s"), std::string("circle"),
          std::string("link"), std::string(300, 'n')}) {
        EXPECT_FALSE(leadsToFolder(target)) << target;
    }
}

TEST_P(LinkTarget, isFoundThroughFortyLinksAndNoMore)
{
    m_folder.folder("0");
    for (int i = 1; i <= 40; ++i) {
        m_folder.link(std::to_string(i), std::to_string(i - 1));
    }

    EXPECT_TRUE(leadsToFolder("39"));
    EXPECT_FALSE(leadsToFolder("40"));
}

TEST_P(LinkTarget, isNoFolderBehindOneThatMayNotBeEntered)
{
    if (!isRoot()) {
        GTEST_SKIP() << "needs root, to become somebody else";
    }
    m_folder.folder("closed");
    m_folder.folder("closed/in");
    m_folder.link("toClosed", "closed");
    m_folder.link("behind", "closed/in");
    ASSERT_EQ(chmod(m_folder.path("closed").c_str(), 0), 0);

    runUnprivileged([&] {
        EXPECT_TRUE(GetParam().leadsToFolder(m_folder.descriptor(), "toClosed"));
        EXPECT_FALSE(GetParam().leadsToFolder(m_folder.descriptor(), "behind"));
    });
}

TEST_P(LinkTarget, leavesNoDescriptorOpen)
{
    m_folder.folder("s");
    const int before = openDescriptorCount();

    EXPECT_TRUE(leadsToFolder("s/../s"));
    EXPECT_FALSE(leadsToFolder("s/x/y"));

    EXPECT_EQ(openDescriptorCount(), before);
}

INSTANTIATE_TEST_SUITE_P(Both, LinkTarget,
                         testing::Values(Way{"bySystem", linkLeadsToFolder},
                                         Way{"carefully", carefully}),
                         [](const auto &way) { return way.param.name; });

} // namespace tessaly::scan
