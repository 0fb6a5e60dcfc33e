#include "platform/storage_locations.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/core/test_support.h"
#include "tests/platform/scoped_environment.h"

namespace tolvane::platform {
namespace {

// The documents folder comes first, then the volumes of each parent in name
// order; a file among them or a parent that is not there adds nothing.
TEST(StorageLocationsTest, DocumentsFirstThenTheMountedVolumesInOrder) {
    testing::TemporaryFolder folder;
    const std::string media = folder.File("media");
    const std::string runMedia = folder.File("run-media");
    for (const std::string& volume : {media + "/USB STICK", media + "/CARD", runMedia + "/phone"}) {
        std::filesystem::create_directories(volume);
    }
    testing::WriteFileBytes(media + "/notes.txt", "not a volume");
    EXPECT_EQ(StorageLocations("/home/a/Documents", {media, folder.File("gone"), runMedia}),
              (std::vector<std::string>{"/home/a/Documents", media + "/CARD", media + "/USB STICK",
                                        runMedia + "/phone"}));

    const testing::ScopedEnvironment user("USER", "someone");
    EXPECT_EQ(RemovableVolumeParents(),
              (std::vector<std::string>{"/media/someone", "/run/media/someone"}));
}

}  // namespace
}  // namespace tolvane::platform
