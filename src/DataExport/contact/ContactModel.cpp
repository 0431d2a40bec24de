// Anchors the vtables of the contact items, so that each lives in the library once.
#include "contact/BkContactData.h"
#include "contact/BkContactItem.h"
#include "contact/BkContactPrivate.h"
#include "contact/BkContactProperty.h"

BkContactData::~BkContactData() = default;

BkContactItem::~BkContactItem() = default;

BkContactPrivate::~BkContactPrivate() = default;

BkContactProperty::~BkContactProperty() = default;
