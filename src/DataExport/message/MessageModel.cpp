// Anchors the vtables of the message items, so that each lives in the library once.
#include "message/BkSMSChat.h"
#include "message/BkSMSChatGroup.h"
#include "message/BkSMSData.h"
#include "message/BkSMSItem.h"
#include "message/BkSMSPiece.h"
#include "message/BkWhatsappChat.h"
#include "message/BkWhatsappItem.h"
#include "message/BkWhatsappMsg.h"

BkSMSData::~BkSMSData() = default;

BkSMSItem::~BkSMSItem() = default;

BkSMSChatGroup::~BkSMSChatGroup() = default;

BkSMSChat::~BkSMSChat() = default;

BkSMSPiece::~BkSMSPiece() = default;

bool BkSMSPiece::neverDownloaded() const
{
    return false;
}

QString BkSMSPiece::fault() const
{
    return {};
}

BkWhatsappItem::~BkWhatsappItem() = default;

BkWhatsappChat::~BkWhatsappChat() = default;

BkWhatsappMsg::~BkWhatsappMsg() = default;

QString BkWhatsappMsg::mediaName() const
{
    return {};
}
