#include "platform/linux/process/ReadToEnd.hpp"

#include "engine/scan/FileDescriptor.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/FilesOnDisk.hpp"

#include <gtest/gtest.h>

#include <string>

#include <fcntl.h>

namespace tessaly {

namespace {

TEST(ReadToEnd, readsAllOrTheFirstBytes)
{
    const TemporaryFolder folder;
    const std::string text(10000, 'x');
    writeFile(folder.path("file"), text);
    const auto opened = [&] {
        return scan::FileDescriptor(open(folder.path("file").c_str(), O_RDONLY | O_CLOEXEC));
    };
    EXPECT_EQ(readToEnd(opened().number()), text);
    EXPECT_EQ(readToEnd(opened().number(), 5000), text.substr(0, 5000));
    EXPECT_EQ(readToEnd(opened().number(), 0), "");
}

TEST(ReadToEnd, isNothingAfterAnError)
{
    const scan::FileDescriptor folder(open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    EXPECT_EQ(readToEnd(folder.number()), std::nullopt);
    EXPECT_EQ(readToEnd(-1), std::nullopt);
}

} // namespace

} // namespace tessaly
