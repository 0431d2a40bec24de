#include "PhoneBackup/whatsapp/WhatsappMessage.h"

#include <algorithm>
#include <array>
#include <utility>

namespace PhoneBackup {

const WhatsappDetails &WhatsappMessage::details() const
{
    static const WhatsappDetails none;
    return more ? *more : none;
}

WhatsappDetails &WhatsappMessage::makeDetails()
{
    if (!more)
        more = std::make_unique<WhatsappDetails>();
    return *more;
}

WhatsappMessage::Kind whatsappKind(qint64 storedType)
{
    using Kind = WhatsappMessage::Kind;
    // ZWAMESSAGE.ZMESSAGETYPE. Up to 15 this is what every description of the database says; the
    // others were seen by few, and each year brings new ones.
    static constexpr std::array<std::pair<qint64, Kind>, 41> kKinds { {
        { 0, Kind::Text },           { 1, Kind::Picture },       { 2, Kind::Video },
        { 3, Kind::Audio },          { 4, Kind::ContactCard },   { 5, Kind::Place },
        { 6, Kind::Event },          { 7, Kind::Link },          { 8, Kind::Document },
        { 10, Kind::Event },         { 11, Kind::Gif },          { 12, Kind::Undecrypted },
        { 14, Kind::Deleted },       { 15, Kind::Sticker },      { 19, Kind::Business },
        { 20, Kind::Business },      { 23, Kind::Business },     { 24, Kind::Business },
        { 25, Kind::Reply },         { 26, Kind::Product },      { 27, Kind::Invitation },
        { 28, Kind::Event },         { 30, Kind::Business },     { 31, Kind::Reply },
        { 32, Kind::Business },      { 34, Kind::Reply },        { 38, Kind::Picture },
        { 39, Kind::Video },         { 41, Kind::Business },     { 42, Kind::Business },
        { 46, Kind::Poll },          { 53, Kind::Audio },        { 54, Kind::VideoNote },
        { 55, Kind::Event },         { 58, Kind::Reply },        { 59, Kind::Call },
        { 62, Kind::Event },         { 63, Kind::PlannedEvent }, { 66, Kind::Album },
        { 68, Kind::StatusMention }, { 73, Kind::Event },
    } };
    if (storedType == 0)
        return Kind::Text;
    const auto found = std::find_if(kKinds.cbegin(), kKinds.cend(), [&](const auto &known) {
        return known.first == storedType;
    });
    return found != kKinds.cend() ? found->second : Kind::Unsupported;
}

bool isFileKind(WhatsappMessage::Kind kind)
{
    using Kind = WhatsappMessage::Kind;
    switch (kind) {
    case Kind::Picture:
    case Kind::Video:
    case Kind::Gif:
    case Kind::VideoNote:
    case Kind::Audio:
    case Kind::Sticker:
    case Kind::Document:
        return true;
    default:
        return false;
    }
}

} // namespace PhoneBackup
