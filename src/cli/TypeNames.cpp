#include "TypeNames.h"

#include "PhoneItems/Backup.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace Cli::TypeNames {

namespace {

struct Name
{
    int code;
    const char16_t *word;
    const char16_t *longForm; // what a person may try who has seen the folder's name; may be empty
};

constexpr std::array<Name, 19> kNames { {
    { 0, u"photos", u"" },
    { 1, u"videos", u"" },
    { 2, u"shared-albums", u"" },
    { 3, u"voice-memos", u"" },
    { 4, u"books", u"" },
    { 5, u"music", u"ringtones-and-music" },
    { 6, u"messages", u"" },
    { 7, u"message-attachments", u"" },
    { 8, u"contacts", u"" },
    { 9, u"notes", u"" },
    { 10, u"app-documents", u"" },
    { 11, u"whatsapp", u"" },
    { 12, u"whatsapp-attachments", u"" },
    { 13, u"reminders", u"" },
    { 14, u"calendar", u"" },
    { 15, u"calls", u"call-history" },
    { 16, u"voicemail", u"" },
    { 17, u"safari", u"" },
    { 18, u"note-attachments", u"" },
} };

QString asWord(const QString &text)
{
    return text.trimmed().toLower().replace(u' ', u'-').replace(u'_', u'-');
}

} // namespace

QString word(int code)
{
    for (const Name &name : kNames) {
        if (name.code == code)
            return QString::fromUtf16(name.word);
    }
    return QString::number(code);
}

bool isPage(int code)
{
    constexpr std::array kCodes { 6, 8, 9, 11, 13, 14, 15, 17 };
    return std::find(kCodes.begin(), kCodes.end(), code) != kCodes.end();
}

std::optional<int> code(const QString &text)
{
    const QString wanted = asWord(text);
    const QList<int> offered = PhoneItems::Backup::dataTypes();
    const auto found = std::find_if(offered.begin(), offered.end(), [&](int candidate) {
        if (wanted == word(candidate) || wanted == QString::number(candidate))
            return true;
        return std::any_of(kNames.begin(), kNames.end(), [&](const Name &name) {
            return name.code == candidate && wanted == QString::fromUtf16(name.longForm);
        });
    });
    if (found == offered.end())
        return std::nullopt;
    return *found;
}

QStringList words()
{
    QStringList all;
    const QList<int> offered = PhoneItems::Backup::dataTypes();
    for (const int code : offered)
        all += word(code);
    return all;
}

} // namespace Cli::TypeNames
