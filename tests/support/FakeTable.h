#ifndef TESTS_SUPPORT_FAKETABLE_H
#define TESTS_SUPPORT_FAKETABLE_H

#include "support/FakeBackup.h"
#include "support/Files.h"
#include "table/BkSafariBookmarkItem.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

//! A row of a table; as a link its cells are title and URL.
class FakeRow : public BkSafariBookmarkItem
{
public:
    QString value(int index) const override { return cells.value(index); }
    bool flag(int index) const override { return index == 0 && deleted; }
    QString bookmarkGroup() const override { return group; }

    QStringList cells;
    QString group;
    bool deleted = false;
};

/*!
    A table that owns its rows. Its indices are no positions: the row at position i has the index
    kFirst + i.
*/
class FakeTable : public FakeData
{
public:
    static constexpr int kFirst = 10;

    using FakeData::FakeData;

    QList<int> recoverList() const override
    {
        QList<int> all;
        for (int i = 0; i < recoverCount(); ++i)
            all.append(kFirst + i);
        return all;
    }
    BkAbstractItem *at(int index, bool original) const override
    {
        return original ? items.value(index - kFirst) : nullptr;
    }
    int column() const override { return int(columns.size()); }
    QString columnName(int col) const override { return columns.value(col); }
    QString value(int row, int col) const override
    {
        const BkAbstractItem *item = items.value(row - kFirst);
        return item ? item->value(col) : QString();
    }

    FakeRow &addRow(const QStringList &cells)
    {
        m_rows.push_back(std::make_unique<FakeRow>());
        FakeRow &row = *m_rows.back();
        row.cells = cells;
        items.append(&row);
        return row;
    }

    /*!
        Fills the table from the file \a path: columns, rows. A row: cells, group, deleted, or null
        for a null pointer. \return whether it has rows, be they none.
    */
    bool load(const QString &path)
    {
        using namespace Qt::StringLiterals;
        const QJsonObject from = QJsonDocument::fromJson(Files::read(path)).object();
        columns = from["columns"_L1].toVariant().toStringList();
        for (const QJsonValue &value : from["rows"_L1].toArray()) {
            if (value.isNull()) {
                items.append(nullptr);
                continue;
            }
            FakeRow &row = addRow(value["cells"_L1].toVariant().toStringList());
            row.group = value["group"_L1].toString();
            row.deleted = value["deleted"_L1].toBool();
        }
        return from["rows"_L1].isArray();
    }

    QStringList columns;

private:
    std::vector<std::unique_ptr<FakeRow>> m_rows;
};

#endif
