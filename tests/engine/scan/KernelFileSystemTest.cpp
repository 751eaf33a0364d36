#include "engine/scan/KernelFileSystem.hpp"

#include "engine/scan/FileDescriptor.hpp"
#include "tests/engine/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <fcntl.h>

namespace tessaly::scan {

TEST(KernelFileSystem, tellsKernelFileSystemsFromStorage)
{
    const TemporaryFolder folder;
    const FileDescriptor place(open("/proc/self", O_PATH));

    EXPECT_EQ(fileSystemKind(folder.descriptor()), FileSystemKind::storage);
    EXPECT_EQ(fileSystemKind(place.number()), FileSystemKind::kernel);
}

TEST(KernelFileSystem, isStorageWhenTheSystemDoesNotTell)
{
    EXPECT_EQ(fileSystemKind(-1), FileSystemKind::storage);
}

} // namespace tessaly::scan
