#include "PhoneBackup/messages/GroupEvent.h"

namespace PhoneBackup {

namespace {

// Values of message.item_type.
enum ItemType : qint64 { Members = 1, Title = 2, Group = 3, Location = 4, Audio = 5, Call = 6 };

// Values of message.group_action_type for events of a group.
GroupEvent::Kind changeOf(qint64 action)
{
    switch (action) {
    case 0:
        return GroupEvent::Kind::Left;
    case 1:
        return GroupEvent::Kind::PhotoChanged;
    case 2:
        return GroupEvent::Kind::PhotoRemoved;
    case 4:
        return GroupEvent::Kind::BackgroundChanged;
    case 6:
        return GroupEvent::Kind::BackgroundRemoved;
    default:
        return GroupEvent::Kind::Changed;
    }
}

} // namespace

GroupEvent::Kind GroupEvent::kindOf(
    qint64 itemType, qint64 groupAction, qint64 shareStatus, bool hasTitle, bool isOneself)
{
    switch (itemType) {
    case Members:
        if (groupAction != 0)
            return Kind::Removed;
        return isOneself ? Kind::ChangedNumber : Kind::Added;
    case Title:
        return hasTitle ? Kind::Named : Kind::NameRemoved;
    case Group:
        return changeOf(groupAction);
    case Location:
        return shareStatus == 0 ? Kind::LocationShared : Kind::LocationHidden;
    case Audio:
        return Kind::AudioKept;
    case Call:
        return Kind::CallStarted;
    default:
        return Kind::Unknown;
    }
}

} // namespace PhoneBackup
