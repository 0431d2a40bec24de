#include "model/Safari.h"

#include "model/Bookmarks.h"
#include "model/BrowserHistory.h"
#include "model/SafariData.h"

namespace PhoneBackup {

void readSafari(Source &source, DataSets &sets)
{
    auto data = std::make_unique<SafariData>();
    readBookmarks(source, *data);
    BrowserHistory(source).read(*data);
    sets[SafariData::kSafari] = std::move(data);
}

} // namespace PhoneBackup
