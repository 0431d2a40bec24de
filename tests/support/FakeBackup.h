#ifndef TESTS_SUPPORT_FAKEBACKUP_H
#define TESTS_SUPPORT_FAKEBACKUP_H

#include "backup/BkBackup.h"
#include "backup/BkData.h"
#include "backup/BkFileItem.h"

#include <QMap>

#include <functional>
#include <memory>
#include <vector>

//! Group of file items.
class FakeGroup : public BkAbstractItem
{
public:
    explicit FakeGroup(const QString &name)
        : m_name(name)
    {
    }
    QString value(int index) const override { return index == 0 ? m_name : QString(); }
    bool flag(int /*index*/) const override { return false; }

private:
    QString m_name;
};

//! File item that is told everything.
class FakeFile : public BkFileItem
{
public:
    QString value(int index) const override { return index == 0 ? name : QString(); }
    bool flag(int /*index*/) const override { return false; }
    QByteArray fileData() const override { return data; }
    QString filePath() const override
    {
        if (onPathAsked)
            onPathAsked();
        return path;
    }
    QDateTime fileDate() const override { return date; }
    BkAbstractItem *groupItem() const override { return group; }

    QString name;
    QString path;
    QByteArray data;
    QDateTime date;
    BkAbstractItem *group = nullptr;
    std::function<void()> onPathAsked;
};

//! Data set over items that others own; all of them are selected.
class FakeData : public BkData
{
public:
    explicit FakeData(int type)
        : m_type(type)
    {
    }
    int dataType() const override { return m_type; }
    int recoverCount() const override { return static_cast<int>(items.size()); }
    QList<int> recoverList() const override
    {
        QList<int> all(items.size());
        for (int i = 0; i < all.size(); ++i)
            all[i] = i;
        return all;
    }
    BkAbstractItem *at(int index, bool /*original*/) const override { return items.value(index); }
    int count(int /*kind*/) const override { return static_cast<int>(items.size()); }
    bool recover(BkAbstractItem *item) const override { return items.contains(item); }
    QList<BkAbstractItem *> recoverFileList() const override { return items; }

    QList<BkAbstractItem *> items;

private:
    int m_type;
};

//! Backup over data sets that others own.
class FakeBackup : public BkBackup
{
public:
    BkData *getBkData(int code) const override
    {
        asked.append(code);
        return sets.value(code);
    }
    QString dataTypeName(int code) const override
    {
        return names.value(code, QStringLiteral("Type %1").arg(code));
    }
    QString backupProperty(int key) const override
    {
        ++ownerAsked;
        return key == 0 ? QStringLiteral("Ann") : QString();
    }

    QMap<int, BkData *> sets;
    QMap<int, QString> names;
    mutable QList<int> asked;
    mutable int ownerAsked = 0;
};

#endif
