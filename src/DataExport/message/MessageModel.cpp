// Anchors the vtables of the message items, so that each lives in the library once.
#include "message/BkSMSChat.h"
#include "message/BkSMSChatGroup.h"
#include "message/BkSMSData.h"
#include "message/BkSMSItem.h"
#include "message/BkSMSPiece.h"

BkSMSData::~BkSMSData() = default;

BkSMSItem::~BkSMSItem() = default;

BkSMSChatGroup::~BkSMSChatGroup() = default;

BkSMSChat::~BkSMSChat() = default;

BkSMSPiece::~BkSMSPiece() = default;
