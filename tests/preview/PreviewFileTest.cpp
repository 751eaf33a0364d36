#include "preview/PreviewFile.hpp"

#include "tests/engine/ChildProcess.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/preview/PreviewFiles.hpp"

#include <gtest/gtest.h>

#include <string>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace tessaly {
namespace {

using Error = PreviewFile::Error;
using Kind = PreviewFileStatus::Kind;

TEST(PreviewFile, opensRegularFilesOfAnyNameAndThroughLinks)
{
    const TemporaryFolder folder;
    writeFile(folder.path("\xFF\n"), "content");
    folder.link("link", "\xFF\n");
    for (const char *name : {"\xFF\n", "link"}) {
        const auto file = PreviewFile::openPath(folder.path(name));
        ASSERT_TRUE(file);
        EXPECT_EQ(file.value()->readAll(), "content");
        EXPECT_EQ(PreviewFileStatus::of(folder.path(name)).byteCount, 7U);
        EXPECT_TRUE(PreviewFileStatus::of(folder.path(name)).modified.isValid());
    }
}

TEST(PreviewFile, opensNothingElseAndDoesNotWait)
{
    const TemporaryFolder folder;
    folder.folder("folder");
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    folder.link("toPipe", "pipe");
    folder.link("toItself", "toItself");
    const struct {
        std::string path;
        Error error;
        Kind kind;
    } cases[] = {
        {folder.path("folder"), Error::notRegular, Kind::folder},
        {folder.path("pipe"), Error::notRegular, Kind::pipe},
        {folder.path("toPipe"), Error::notRegular, Kind::pipe},
        {"/dev/null", Error::notRegular, Kind::device},
        {folder.path("gone"), Error::missing, Kind::missing},
        {folder.path("toItself"), Error::missing, Kind::missing},
    };
    for (const auto &one : cases) {
        const auto file = PreviewFile::openPath(one.path);
        ASSERT_FALSE(file) << one.path;
        EXPECT_EQ(file.error(), one.error) << one.path;
        EXPECT_EQ(PreviewFileStatus::of(one.path).kind, one.kind) << one.path;
    }
}

TEST(PreviewFile, tellsAFileThatMayNotBeRead)
{
    if (!isRoot()) {
        GTEST_SKIP() << "needs root, to become somebody who may not read the file";
    }
    const TemporaryFolder folder;
    folder.file("secret");
    ASSERT_EQ(chmod(folder.path("secret").c_str(), 0600), 0);
    ASSERT_EQ(chmod(folder.path().c_str(), 0755), 0);
    runUnprivileged([&] {
        const auto file = PreviewFile::openPath(folder.path("secret"));
        ASSERT_FALSE(file);
        EXPECT_EQ(file.error(), Error::forbidden);
    });
}

TEST(PreviewFile, readsNothingMoreOnceStopped)
{
    const TemporaryFolder folder;
    folder.file("file", 1'000'000);
    std::stop_source stop;
    const auto file = PreviewFile::openPath(folder.path("file"), stop.get_token());
    ASSERT_TRUE(file);
    EXPECT_EQ(file.value()->read(500'000).size(), 500'000);
    stop.request_stop();
    EXPECT_EQ(file.value()->read(500'000).size(), 0);
}

} // namespace
} // namespace tessaly
