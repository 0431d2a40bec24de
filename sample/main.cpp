#include "sample/BackupWriter.h"
#include "sample/SampleBackup.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <CLI/CLI.hpp>

#include <cstdio>
#include <string>

namespace {

using namespace Qt::StringLiterals;

constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;
constexpr int kMostOfAKind = 10'000'000;
constexpr int kMostIterations = 1'000'000'000;
constexpr int kOldRelease = 9;

void print(std::FILE *stream, const QString &text)
{
    std::fputs((text + u'\n').toLocal8Bit().constData(), stream);
}

void addCount(CLI::App &app, const std::string &name, int &count, const std::string &what)
{
    app.add_option(name, count, what)
        ->check(CLI::Range(0, kMostOfAKind).description(""))
        ->type_name("N")
        ->capture_default_str();
}

void addMessageOptions(CLI::App &app, Sample::Options &options)
{
    app.add_option("--messages",
                   options.messages,
                   "Messages; without this a few conversations with every kind of message")
        ->check(CLI::Range(0, kMostOfAKind).description(""))
        ->type_name("N");
    addCount(app, "--conversations", options.conversations, "Conversations that --messages fill");
    app.add_option("--messages-era",
                   options.messagesRelease,
                   "iOS release whose tables the messages stand in, 6 to 18")
        ->check(CLI::Range(6, 18).description(""))
        ->type_name("RELEASE")
        ->capture_default_str();
}

void addContactOptions(CLI::App &app, Sample::Options &options)
{
    app.add_option(
           "--contacts", options.contacts, "Contacts; without this a few with every kind of entry")
        ->check(CLI::Range(0, kMostOfAKind).description(""))
        ->type_name("N");
    addCount(app,
             "--contact-photos",
             options.contactPhotos,
             "How many of the --contacts have a photo, of 100 KB each");
}

void addPlannerOptions(CLI::App &app, Sample::Options &options)
{
    addCount(app, "--notes", options.notes, "Notes");
    addCount(app, "--events", options.events, "Events of the calendar");
    addCount(app, "--reminders", options.reminders, "Reminders");
    app.add_option("--planner-era",
                   options.plannerRelease,
                   "iOS release whose stores notes, events and reminders stand in, 6 to 18")
        ->check(CLI::Range(6, 18).description(""))
        ->type_name("RELEASE")
        ->capture_default_str();
}

void addWhatsappOptions(CLI::App &app, Sample::Options &options)
{
    app.add_option("--whatsapp-messages",
                   options.whatsappMessages,
                   "WhatsApp messages; without this a few chats with every kind of message")
        ->check(CLI::Range(0, kMostOfAKind).description(""))
        ->type_name("N");
    addCount(app, "--whatsapp-chats", options.whatsappChats, "Chats that --whatsapp-messages fill");
}

// The command line as it is given, before a backup is begun.
struct Style
{
    std::string password;
    int iterations = static_cast<int>(Sample::Encryption::Settings().iterations);
    bool old = false;
};

void addStyleOptions(CLI::App &app, Style &style)
{
    app.add_option("--encrypted", style.password, "Encrypt the backup with this password")
        ->type_name("PASSWORD");
    app.add_option("--iterations", style.iterations, "Rounds in which the password becomes a key")
        ->check(CLI::Range(1, kMostIterations).description(""))
        ->type_name("N")
        ->capture_default_str();
    app.add_flag("--old-style",
                 style.old,
                 "A backup of system version 9: index Manifest.mbdb, all files side by side");
}

void apply(const Style &style, Sample::BackupWriter &writer)
{
    if (style.old) {
        const QString version = u"9.3.5"_s;
        writer.setInfo(u"Product Version"_s, version);
        writer.setInfo(u"Build Version"_s, u"13G36"_s);
        writer.setInfo(u"Product Type"_s, u"iPhone6,2"_s);
        writer.setInfo(u"Product Name"_s, QVariant());
        writer.setManifest(u"Version"_s, u"9.1"_s);
    }
    if (!style.password.empty()) {
        Sample::Encryption::Settings settings;
        settings.password = QString::fromLocal8Bit(style.password.c_str());
        settings.iterations = static_cast<quint32>(style.iterations);
        settings.twoSteps = !style.old;
        writer.setEncryption(settings);
    }
}

bool isNewOrEmpty(const QString &path)
{
    const QFileInfo info(path);
    return !info.exists()
        || (info.isDir()
            && QDir(path).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System
                                  | QDir::NoDotAndDotDot));
}

QString summary(const Sample::Options &options)
{
    QStringList parts;
    const auto add = [&parts](int count, const QString &one, const QString &many) {
        if (count > 0)
            parts.append(u"%1 %2"_s.arg(count).arg(count == 1 ? one : many));
    };
    add(options.photos, u"photo"_s, u"photos"_s);
    add(options.videos, u"video"_s, u"videos"_s);
    add(options.sharedPhotos, u"shared picture"_s, u"shared pictures"_s);
    add(options.voiceMemos, u"voice memo"_s, u"voice memos"_s);
    add(options.books, u"book"_s, u"books"_s);
    add(options.ringtones, u"ringtone"_s, u"ringtones"_s);
    add(options.appDocuments, u"app document"_s, u"app documents"_s);
    add(options.voicemails, u"voicemail"_s, u"voicemails"_s);
    if (options.messages == Sample::Options::kShowcase)
        parts.append(u"conversations with every kind of message"_s);
    add(options.messages, u"message"_s, u"messages"_s);
    if (options.contacts == Sample::Options::kShowcase)
        parts.append(u"contacts with every kind of entry"_s);
    add(options.contacts, u"contact"_s, u"contacts"_s);
    add(options.notes, u"note"_s, u"notes"_s);
    add(options.events, u"event"_s, u"events"_s);
    add(options.reminders, u"reminder"_s, u"reminders"_s);
    if (options.whatsappMessages == Sample::Options::kShowcase)
        parts.append(u"WhatsApp chats with every kind of message"_s);
    add(options.whatsappMessages, u"WhatsApp message"_s, u"WhatsApp messages"_s);
    add(options.calls, u"call"_s, u"calls"_s);
    add(options.bookmarks, u"bookmark"_s, u"bookmarks"_s);
    add(options.history, u"visited page"_s, u"visited pages"_s);
    add(options.indexRows, u"row without a file"_s, u"rows without files"_s);
    return parts.isEmpty() ? u"nothing but settings"_s : parts.join(", "_L1);
}

} // namespace

int main(int argc, char *argv[])
{
    // The plug-ins that write pictures are looked up through it.
    const QCoreApplication application(argc, argv);

    Sample::Options options;
    std::string out;
    std::vector<qint64> fileSizesBytes;
    CLI::App app("Makes a phone backup that looks like a real one, with invented contents.",
                 "make-sample-backup");
    app.add_option("OUT", out, "Folder for the backup; must be new or empty")->required();
    addCount(app, "--photos", options.photos, "Photos of the camera roll");
    addCount(app, "--videos", options.videos, "Videos of the camera roll");
    addCount(app, "--shared-photos", options.sharedPhotos, "Pictures and videos of shared albums");
    addCount(app, "--voice-memos", options.voiceMemos, "Voice memos");
    addCount(app, "--books", options.books, "Books");
    addCount(app, "--ringtones", options.ringtones, "Ringtones");
    addCount(app, "--app-documents", options.appDocuments, "Documents of apps");
    addCount(app, "--voicemail", options.voicemails, "Voicemail messages");
    addMessageOptions(app, options);
    addContactOptions(app, options);
    addPlannerOptions(app, options);
    addWhatsappOptions(app, options);
    addCount(app, "--calls", options.calls, "Calls");
    addCount(
        app, "--bookmarks", options.bookmarks, "Bookmarks, those of the reading list included");
    addCount(app, "--history", options.history, "Pages of the browser's history");
    Style style;
    addStyleOptions(app, style);
    addCount(app, "--index-rows", options.indexRows, "Rows of the index on top, without files");
    app.add_option("--file-size",
                   fileSizesBytes,
                   "Sizes of photos and videos in bytes, in turn; may be repeated")
        ->check(CLI::Range(1, 1 << 30).description(""))
        ->type_name("BYTES");
    app.add_option("--seed", options.seed, "The same seed makes the same backup, byte for byte")
        ->type_name("S")
        ->capture_default_str();
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? 0 : kExitUsage;
    }
    options.fileSizesBytes = QList<qint64>(fileSizesBytes.cbegin(), fileSizesBytes.cend());

    const QString path = QDir::cleanPath(QString::fromLocal8Bit(out.c_str()));
    if (!isNewOrEmpty(path)) {
        print(stderr,
              u"%1 is not an empty folder. Name a new one."_s.arg(QDir::toNativeSeparators(path)));
        return kExitUsage;
    }

    options.oldStyle = style.old;
    if (style.old && app.count("--messages-era") == 0)
        options.messagesRelease = kOldRelease;
    if (style.old && app.count("--planner-era") == 0)
        options.plannerRelease = kOldRelease;
    Sample::BackupWriter writer(path,
                                style.old ? Sample::BackupWriter::Layout::Records
                                          : Sample::BackupWriter::Layout::TwoLevel);
    apply(style, writer);
    Sample::addSampleContents(writer, options);
    if (!writer.finish()) {
        print(stderr, u"The backup could not be made: %1"_s.arg(writer.error()));
        return kExitFailed;
    }
    print(stdout,
          u"Made %1 (seed %2): %3.\n%4 rows in the index, %5 files, %6 bytes."_s
              .arg(QDir::toNativeSeparators(path))
              .arg(options.seed)
              .arg(summary(options))
              .arg(writer.rowCount())
              .arg(writer.fileCount())
              .arg(writer.contentSizeBytes()));
    return 0;
}
