#include "export/CUtils.h"
#include "export/FileName_p.h"

namespace {

// Units of UTF-16 of the character at the start of \a text, which is not empty.
qsizetype unitsOfFirst(QStringView text)
{
    return text.size() > 1 && text[0].isHighSurrogate() && text[1].isLowSurrogate() ? 2 : 1;
}

// A surrogate without its other half becomes a replacement character, which takes three, too.
qsizetype bytesOfFirst(QStringView text)
{
    const char16_t unit = text[0].unicode();
    return unit < 0x80 ? 1 : unit < 0x800 ? 2 : unitsOfFirst(text) == 2 ? 4 : 3;
}

} // namespace

qsizetype FileName::bytes(QStringView name)
{
    qsizetype count = 0;
    while (!name.isEmpty()) {
        count += bytesOfFirst(name);
        name = name.sliced(unitsOfFirst(name));
    }
    return count;
}

QString FileName::cut(QStringView name, qsizetype maxBytes)
{
    qsizetype length = 0;
    for (qsizetype left = maxBytes; length < name.size();) {
        const QStringView rest = name.sliced(length);
        left -= bytesOfFirst(rest);
        if (left < 0)
            break;
        length += unitsOfFirst(rest);
    }
    return name.first(length).toString();
}

QString FileName::visible(const QString &name, qsizetype maxBytes)
{
    QString safe = CUtils::safeFileName(name);
    safe.replace(QChar(u'\0'), QLatin1Char('_')); // where a path would end
    QStringView shown(safe);
    while (shown.startsWith(u'.'))
        shown = shown.sliced(1);
    const QString fitting = cut(shown, maxBytes);
    return fitting.isEmpty() ? QStringLiteral("_") : fitting;
}
