#include "app/controls/tables/CellTableModel.hpp"

#include "app/controls/tables/CellTableSource.hpp"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

/// As many rows as there are names.
class NamedRows final : public CellTableSource {
public:
    [[nodiscard]] int numberOfRowsInTableView() const override
    {
        return static_cast<int>(names.size());
    }
    [[nodiscard]] QWidget *viewForTableColumn(int /*row*/) override { return nullptr; }
    [[nodiscard]] QString searchText(int row) const override { return names[row]; }
    [[nodiscard]] QString accessibleText(int row) const override { return u"row "_s + names[row]; }

    QStringList names{u"a"_s, u"b"_s};
};

class CellTableModelTest : public testing::Test {
protected:
    NamedRows m_rows;
    CellTableModel m_model{nullptr};
    /// Ends the test at the first call or signal that breaks the rules of item models.
    const QAbstractItemModelTester m_tester{&m_model,
                                            QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(CellTableModelTest, hasNoRowsWithoutASource)
{
    EXPECT_EQ(m_model.rowCount(), 0);
    m_model.setSource(&m_rows);
    EXPECT_EQ(m_model.rowCount(), 2);
    m_model.setSource(nullptr);
    EXPECT_EQ(m_model.rowCount(), 0);
    EXPECT_FALSE(m_model.data(m_model.index(0), Qt::DisplayRole).isValid());
}

TEST_F(CellTableModelTest, isAListWhoseRowsHaveNoChildren)
{
    m_model.setSource(&m_rows);
    EXPECT_EQ(m_model.rowCount(m_model.index(0)), 0);
    EXPECT_FALSE(m_model.index(2).isValid());
    EXPECT_FALSE(m_model.index(0, 1).isValid());
}

TEST_F(CellTableModelTest, hasTheTextsForSearchingAndForScreenReaders)
{
    m_model.setSource(&m_rows);
    EXPECT_EQ(m_model.data(m_model.index(1), Qt::DisplayRole), u"b"_s);
    EXPECT_EQ(m_model.data(m_model.index(1), Qt::AccessibleTextRole), u"row b"_s);
    EXPECT_FALSE(m_model.data(m_model.index(1), Qt::DecorationRole).isValid());
}

TEST_F(CellTableModelTest, rowsChangeInAResetAlone)
{
    m_model.setSource(&m_rows);
    const QSignalSpy resets(&m_model, &QAbstractItemModel::modelReset);
    m_rows.names = QStringList{u"x"_s, u"y"_s, u"z"_s};
    EXPECT_EQ(m_model.rowCount(), 2) << "views have not been told yet";
    EXPECT_EQ(m_model.data(m_model.index(0), Qt::DisplayRole), u"x"_s);
    m_model.reload();
    EXPECT_EQ(resets.size(), 1);
    EXPECT_EQ(m_model.rowCount(), 3);
}

TEST_F(CellTableModelTest, aRowThatItsSourceNoLongerHasIsEmptyUntilTheReset)
{
    m_model.setSource(&m_rows);
    m_rows.names.removeLast();
    EXPECT_EQ(m_model.rowCount(), 2);
    EXPECT_FALSE(m_model.data(m_model.index(1), Qt::DisplayRole).isValid());
    EXPECT_FALSE(m_model.data(m_model.index(1), Qt::AccessibleTextRole).isValid());
    m_model.reload();
    EXPECT_EQ(m_model.rowCount(), 1);
}

} // namespace
} // namespace tessaly
