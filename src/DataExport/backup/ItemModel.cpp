// Anchors the vtables of the item model, so that each lives in the library once.
#include "backup/BkAbstractItem.h"
#include "backup/BkBackup.h"
#include "backup/BkData.h"
#include "backup/BkFileItem.h"

#include <QIODevice>

BkBackup::~BkBackup() = default;

BkData::~BkData() = default;

QList<BkAbstractItem *> BkData::recoverFileList() const
{
    return {};
}

int BkData::column() const
{
    return 0;
}

QString BkData::columnName(int /*col*/) const
{
    return {};
}

QString BkData::value(int /*row*/, int /*col*/) const
{
    return {};
}

BkAbstractItem::~BkAbstractItem() = default;

qint64 BkAbstractItem::id() const
{
    return -1;
}

QDateTime BkAbstractItem::date() const
{
    return {};
}

qint64 BkAbstractItem::sizeBytes() const
{
    return 0;
}

QString BkAbstractItem::source() const
{
    return {};
}

BkAbstractItem *BkAbstractItem::groupItem() const
{
    return nullptr;
}

BkFileItem::~BkFileItem() = default;

bool BkFileItem::isStreamed() const
{
    return false;
}

std::unique_ptr<QIODevice> BkFileItem::openStream() const
{
    return nullptr;
}

QDateTime BkFileItem::fileDate() const
{
    return {};
}
