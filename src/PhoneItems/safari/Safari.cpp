#include "PhoneItems/safari/Safari.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/safari/Bookmarks.h"
#include "PhoneBackup/safari/BrowserHistory.h"
#include "PhoneItems/safari/SafariData.h"
#include "platform/Translation_p.h"

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

namespace {

// As the item model has them, untranslated.
const QString kReadingList = u"Reading List"_s;
const QString kHistory = u"History"_s;

QString groupOf(const Bookmark &bookmark)
{
    if (bookmark.readLater)
        return kReadingList;
    if (!bookmark.folder)
        return {};
    switch (bookmark.folder->kind) {
    case BookmarkFolder::Kind::Root:
        return {};
    case BookmarkFolder::Kind::Favorites:
        return tr("Favorites");
    case BookmarkFolder::Kind::Menu:
        return tr("Bookmarks Menu");
    case BookmarkFolder::Kind::ReadingList:
    case BookmarkFolder::Kind::AllowList:
    case BookmarkFolder::Kind::Own:
        break;
    }
    return bookmark.folder->title;
}

} // namespace

void readSafari(Source &source, DataSets &sets)
{
    auto data = std::make_unique<SafariData>();
    readBookmarks(source, [&data](const Bookmark &bookmark) {
        data->add({ { bookmark.title, bookmark.address }, {}, bookmark.id, bookmark.deleted },
                  groupOf(bookmark));
    });
    BrowserHistory(source).read([&data](const VisitedPage &page) {
        data->add({ { page.title, page.address }, page.visited, page.id, false }, kHistory);
    });
    sets[DataType::Safari] = std::move(data);
}

} // namespace PhoneItems
