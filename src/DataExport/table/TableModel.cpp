// Anchors the vtable of the bookmark items, so that it lives in the library once.
#include "table/BkSafariBookmarkItem.h"

BkSafariBookmarkItem::~BkSafariBookmarkItem() = default;
