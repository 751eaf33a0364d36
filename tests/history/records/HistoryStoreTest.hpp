#pragma once

#include "app/delegate/KORVENAppDelegate.hpp"
#include "history/records/KORVENHistoryStore.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/fakes/FailingFileCalls.hpp"
#include "tests/fakes/FakeMainWindow.hpp"
#include "tests/fakes/FakeServices.hpp"
#include "tests/history/records/OwnHistoryStore.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <unistd.h>

namespace tessaly {

/// Stores in a folder of their own, whose file calls can be made to fail.
class HistoryStoreTest : public testing::Test {
protected:
    using Keys = std::vector<std::string>;
    using Log = std::vector<std::string>;
    using Record = KORVENHistoryStore::Record;

    HistoryStoreTest() { m_delegate.setWindowController(&m_window); }

    std::unique_ptr<KORVENHistoryStore> openStore()
    {
        return OwnHistoryStore::open(m_delegate, m_calls);
    }

    /// A record with this key, whose scan has a file.
    Record record(const std::string &key, double date = 0) const
    {
        const auto record = std::make_shared<KORVENHistoryItem>("/path of " + key, "1.00 KB");
        record->setScanKey(key);
        record->setScanDate(archive::Timestamp{date});
        makeFile(key + ".archive");
        return record;
    }

    void makeFile(const std::string &name, const std::string &text = "a scan") const
    {
        std::ofstream(m_folder.path(name)) << text;
    }
    [[nodiscard]] bool hasFile(const std::string &name) const
    {
        return access(m_folder.path(name).c_str(), F_OK) == 0;
    }

    static Keys keysOf(const HistoryRecords &records)
    {
        Keys keys;
        for (const Record &record : records) {
            keys.push_back(record->scanKey().value_or("(none)"));
        }
        return keys;
    }
    /// What the next start will read.
    [[nodiscard]] Keys savedKeys() const
    {
        const auto records = readHistoryFile(m_historyFile);
        return records ? keysOf(records.value()) : Keys{records.error().text()};
    }
    [[nodiscard]] long countOf(const std::string &call) const
    {
        return std::count(m_calls.log().begin(), m_calls.log().end(), call);
    }

    TemporaryFolder m_folder;
    const std::string m_historyFile = m_folder.path("scanHistory.archive");
    FakeServices m_services{m_folder.path()};
    FakeMainWindow m_window;
    KORVENAppDelegate m_delegate{m_services.all()};
    FailingFileCalls m_calls;
};

} // namespace tessaly
