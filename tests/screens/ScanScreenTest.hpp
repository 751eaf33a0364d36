#pragma once

#include "engine/archive/ScanFileWriter.hpp"
#include "history/records/KORVENHistoryStore.hpp"
#include "screens/KORVENScanViewController.hpp"
#include "tests/engine/tree/TreeBuilder.hpp"
#include "tests/screens/ResultScreenTest.hpp"

#include <memory>
#include <string>

namespace tessaly {

/// The folder scan screen.
class ScanScreenTest : public ResultScreenTest<KORVENScanViewController> {
protected:
    /// A recorded scan of this tree; its key.
    std::string recordTree(const tree::ScanTree &tree, double date = 0)
    {
        auto item = std::make_shared<KORVENHistoryItem>(std::string(tree.root().itemName()), "x");
        item->setScanDate(archive::Timestamp{date});
        EXPECT_TRUE(archive::writeScanFile(tree.root(), item->scanFilePath().value()));
        const std::string key = item->scanKey().value();
        KORVENHistoryStore::sharedStore().addItem(item);
        return key;
    }
    void showTree(const std::shared_ptr<tree::ScanTree> &tree)
    {
        m_screen->loadHistoryItem(recordTree(*tree));
    }

    void chooseAndScan(const std::string &folder)
    {
        m_screen->scanButtonPressed();
        m_services.folderChooser.answer(folder);
    }
};

} // namespace tessaly
