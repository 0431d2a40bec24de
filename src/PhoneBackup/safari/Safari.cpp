#include "PhoneBackup/safari/Safari.h"

#include "PhoneBackup/safari/Bookmarks.h"
#include "PhoneBackup/safari/BrowserHistory.h"
#include "PhoneItems/safari/SafariData.h"

namespace PhoneBackup {

void readSafari(Source &source, DataSets &sets)
{
    auto data = std::make_unique<SafariData>();
    readBookmarks(source, *data);
    BrowserHistory(source).read(*data);
    sets[SafariData::kSafari] = std::move(data);
}

} // namespace PhoneBackup
