// What is fixed of the four built-in catalogue files. They are read as bytes here, and through the reader of
// INI files where a value has to survive it.
#include "env/inifile.h"
#include "resources/resources.h"
#include "support/quillettest.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QtTest>

#include <algorithm>

namespace {

using Lines = QList<QByteArray>;

struct Entry
{
    QByteArray key;
    QByteArray value; // as it stands in the file
};

struct Section
{
    QByteArray name;
    QVector<Entry> entries;

    Lines keys() const
    {
        Lines keys;
        for (const Entry& entry : entries)
            keys.append(entry.key);
        return keys;
    }
    QByteArray value(const QByteArray& key) const
    {
        for (const Entry& entry : entries) {
            if (entry.key == key)
                return entry.value;
        }
        return QByteArray();
    }
};

QString path(const char* name)
{
    return QLatin1String(":/mime/") + QLatin1String(name);
}

QByteArray content(const char* name)
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QVector<Section> sections(const char* name)
{
    QVector<Section> sections;
    for (const QByteArray& line : content(name).split('\n')) {
        const int equals = line.indexOf('=');
        if (line.startsWith('['))
            sections.append(Section{line.mid(1, line.size() - 2), {}});
        else if (equals >= 0 && !sections.isEmpty())
            sections.last().entries.append(Entry{line.left(equals), line.mid(equals + 1)});
    }
    return sections;
}

Lines names(const QVector<Section>& sections)
{
    Lines names;
    for (const Section& section : sections)
        names.append(section.name);
    return names;
}

// The ids of the sections whose `key` is `value`.
Lines idsWith(const QByteArray& key, const QByteArray& value)
{
    Lines ids;
    for (const Section& application : sections("applications")) {
        if (application.value(key) == value)
            ids.append(application.name);
    }
    return ids;
}

Lines words(const char* text)
{
    return QByteArray(text).simplified().split(' ');
}

Lines sorted(Lines lines)
{
    std::sort(lines.begin(), lines.end());
    return lines;
}

Lines withoutDuplicates(const Lines& lines)
{
    Lines result = sorted(lines);
    result.erase(std::unique(result.begin(), result.end()), result.end());
    return result;
}

struct Extension
{
    QByteArray extension; // with its dot
    QByteArray type;
};

QVector<Extension> extensions()
{
    QVector<Extension> extensions;
    for (const QByteArray& line : content("extensions").split('\n')) {
        const int colon = line.indexOf(": ");
        extensions.append(Extension{line.left(colon), line.mid(colon + 2)});
    }
    return extensions;
}

QByteArray typeOf(const QByteArray& extension)
{
    for (const Extension& line : extensions()) {
        if (line.extension == extension)
            return line.type;
    }
    return QByteArray();
}

const Lines& applicationIds()
{
    static const Lines ids = words(
        "acrobatpro acrobatreader acadlt2013 ark calculator chrome factusol isis draftsight dropbox gwenview"
        " kcalc krita kmail kwrite libreofficecalc libreofficedraw libreofficeimpress libreofficewriter"
        " msaccess2010 msexcel2010 msoutlook2010 mspowerpoint2010 msword2010"
        " msaccess201332 msexcel201332 msoutlook201332 mspowerpoint201332 msword201332"
        " msaccess2013 msexcel2013 msoutlook2013 mspowerpoint2013 msword2013"
        " msaccess20136432 msexcel20136432 msoutlook20136432 mspowerpoint20136432 msword20136432"
        " paint notepad okular konsole oracle remedy sapgui quilletfiles quilletweb");
    return ids;
}

} // namespace

class CatalogueFilesTest : public QuilletTest
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }

    // --- all files

    void everyFileHasItsSize_data()
    {
        QTest::addColumn<int>("bytes");
        QTest::newRow("applications") << 12286;
        QTest::newRow("groups") << 508;
        QTest::newRow("types") << 12960;
        QTest::newRow("extensions") << 25685;
    }
    void everyFileHasItsSize() { QTEST(content(QTest::currentDataTag()).size(), "bytes"); }

    void everyFileIsUtf8WithLineFeeds_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char* name : {"applications", "groups", "types", "extensions"})
            QTest::newRow(name) << QByteArray(name);
    }
    void everyFileIsUtf8WithLineFeeds()
    {
        QFETCH(QByteArray, name);
        const QByteArray bytes = content(name);
        QVERIFY(!bytes.isEmpty());
        QCOMPARE(QString::fromUtf8(bytes).toUtf8(), bytes);
        QVERIFY(!bytes.startsWith("\xef\xbb\xbf"));
        for (const char byte : bytes)
            QVERIFY(byte == '\n' || static_cast<unsigned char>(byte) >= 0x20);
    }

    void iniFilesHaveOneEmptyLineBetweenSectionsAndNoOther_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char* name : {"applications", "groups", "types"})
            QTest::newRow(name) << QByteArray(name);
    }
    void iniFilesHaveOneEmptyLineBetweenSectionsAndNoOther()
    {
        QFETCH(QByteArray, name);
        Lines blocks;
        for (const Section& section : sections(name)) {
            QByteArray block = '[' + section.name + "]\n";
            for (const Entry& entry : section.entries)
                block += entry.key + '=' + entry.value + '\n';
            blocks.append(block);
        }
        QCOMPARE(blocks.join('\n'), content(name));
    }

    void theReaderFindsEverySection_data()
    {
        QTest::addColumn<int>("count");
        QTest::newRow("applications") << 48;
        QTest::newRow("groups") << 8;
        QTest::newRow("types") << 13;
    }
    void theReaderFindsEverySection()
    {
        QStringList expected;
        for (const QByteArray& name : sorted(names(sections(QTest::currentDataTag()))))
            expected.append(QString::fromLatin1(name));
        QTEST(expected.size(), "count");
        QCOMPARE(env::childGroups(path(QTest::currentDataTag())), expected);
    }

    // --- applications

    void applicationsHaveTheirIdsInOrder() { QCOMPARE(names(sections("applications")), applicationIds()); }

    void everyApplicationHasItsKeysInOrderAndNoneIsEmpty()
    {
        const Lines keys = words("os server command arguments icon name description description-es"
                                 " only-one-instance groups");
        for (const Section& application : sections("applications")) {
            Lines expected = keys;
            if (!application.keys().contains("arguments"))
                expected.removeOne("arguments");
            QVERIFY2(application.keys() == expected, application.name);
            for (const Entry& entry : application.entries) {
                QVERIFY2(!entry.value.isEmpty(), application.name);
                QVERIFY2(entry.value == entry.value.trimmed(), application.name);
            }
        }
    }

    void sevenApplicationsHaveArguments()
    {
        Lines ids;
        for (const Section& application : sections("applications")) {
            if (!application.value("arguments").isEmpty())
                ids.append(application.name);
        }
        QCOMPARE(ids,
                 words("acrobatpro acrobatreader chrome libreofficecalc libreofficedraw libreofficeimpress"
                       " libreofficewriter"));
        QCOMPARE(env::readValue(path("applications"), QStringLiteral("chrome/arguments")),
                 QStringLiteral("-disable-accelerated-compositing -disable-popup-blocking"));
    }

    void thirtyThreeApplicationsAreForWindowsAndFifteenForLinux()
    {
        QCOMPARE(idsWith("os", "windows").size(), 33);
        QCOMPARE(
            idsWith("os", "linux"),
            words("ark isis draftsight gwenview kcalc krita kmail kwrite okular konsole oracle remedy sapgui"
                  " quilletfiles quilletweb"));
    }

    void everyApplicationRunsOnThisHost() { QCOMPARE(idsWith("server", "localhost"), applicationIds()); }

    void onlyOneInstanceIsTrueOrFalse()
    {
        const Lines single = idsWith("only-one-instance", "true");
        QCOMPARE(single.size() + idsWith("only-one-instance", "false").size(), 48);
        QVERIFY(single.contains("calculator"));
        QVERIFY(single.contains("quilletweb"));
    }

    void everyApplicationIsInGroupsOfTheLauncher()
    {
        const Lines allowed = words("graphics internet office utilities development");
        Lines used;
        for (const Section& application : sections("applications")) {
            const Lines groups = application.value("groups").split(':');
            QVERIFY2(withoutDuplicates(groups).size() == groups.size(), application.name);
            for (const QByteArray& group : groups)
                QVERIFY2(allowed.contains(group), application.name);
            used += groups;
        }
        QCOMPARE(withoutDuplicates(used), sorted(allowed));
        QCOMPARE(idsWith("groups", "internet"), words("chrome quilletweb"));
        QVERIFY(idsWith("groups", "utilities").contains("quilletfiles"));
    }

    void iconsAreThoseOfTheProgramsWithVersionsSharingOne()
    {
        Lines icons;
        for (const Section& application : sections("applications")) {
            QByteArray base = application.name;
            if (base.startsWith("acrobat"))
                base = "acrobat";
            else if (base == "acadlt2013")
                base = "autocad";
            else if (base.startsWith("ms"))
                base = base.left(base.indexOf("20") + 4); // one picture for a year, whatever the bits
            QCOMPARE(application.value("icon"), base + ".png");
            icons.append(application.value("icon"));
        }
        QCOMPARE(withoutDuplicates(icons).size(), 37);
    }

    void windowsProgramsAreNamedByPathBelowAFolderOfTheSystem()
    {
        const QRegularExpression command(QStringLiteral(
            R"(^%(programfiles|programfiles\(x86\)|programw6432|windir)%(\\\\[A-Za-z0-9 ]+)+\.(exe|EXE)$)"));
        for (const Section& application : sections("applications")) {
            if (application.value("os") != "windows")
                continue;
            const QString raw = QString::fromLatin1(application.value("command"));
            QVERIFY2(command.match(raw).hasMatch(), application.name);
            const QString key = QString::fromLatin1(application.name) + QLatin1String("/command");
            QCOMPARE(env::readValue(path("applications"), key),
                     QString(raw).replace(QLatin1String("\\\\"), QLatin1String("\\")));
        }
    }

    void linuxProgramsAreNamedWithoutAPath()
    {
        for (const QByteArray& id : idsWith("os", "linux")) {
            const QString command =
                env::readValue(path("applications"), QString::fromLatin1(id) + QLatin1String("/command"));
            QVERIFY2(QRegularExpression(QStringLiteral("^[a-z0-9]+$")).match(command).hasMatch(), id);
        }
        QCOMPARE(idsWith("command", "quilletfiles"), Lines{"quilletfiles"});
        QCOMPARE(idsWith("command", "quilletweb"), Lines{"quilletweb"});
    }

    void commandsAreTheDefaultPaths_data()
    {
        QTest::addColumn<QString>("command");
        QTest::newRow("chrome") << R"(%programfiles(x86)%\Google\Chrome\Application\chrome.exe)";
        QTest::newRow("calculator") << R"(%windir%\system32\calc.exe)";
        QTest::newRow("notepad") << R"(%windir%\system32\notepad.exe)";
        QTest::newRow("paint") << R"(%windir%\system32\mspaint.exe)";
        QTest::newRow("libreofficewriter") << R"(%programfiles%\LibreOffice\program\swriter.exe)";
        // On a 64-bit system the folder tells a 32-bit program from a 64-bit one.
        QTest::newRow("msword2010") << R"(%programfiles(x86)%\Microsoft Office\Office14\WINWORD.EXE)";
        QTest::newRow("msword201332") << R"(%programfiles(x86)%\Microsoft Office\Office15\WINWORD.EXE)";
        QTest::newRow("msword2013") << R"(%programfiles%\Microsoft Office\Office15\WINWORD.EXE)";
        QTest::newRow("msword20136432") << R"(%programw6432%\Microsoft Office\Office15\WINWORD.EXE)";
        QTest::newRow("msaccess201332") << R"(%programfiles(x86)%\Microsoft Office\Office15\MSACCESS.EXE)";
        QTest::newRow("msexcel20136432") << R"(%programw6432%\Microsoft Office\Office15\EXCEL.EXE)";
        QTest::newRow("msoutlook2010") << R"(%programfiles(x86)%\Microsoft Office\Office14\OUTLOOK.EXE)";
        QTest::newRow("mspowerpoint2013") << R"(%programfiles%\Microsoft Office\Office15\POWERPNT.EXE)";
        QTest::newRow("ark") << "ark";
        QTest::newRow("kwrite") << "kwrite";
    }
    void commandsAreTheDefaultPaths()
    {
        const QString key = QLatin1String(QTest::currentDataTag()) + QLatin1String("/command");
        QTEST(env::readValue(path("applications"), key), "command");
    }

    void noTwoApplicationsReadTheSame_data()
    {
        QTest::addColumn<QByteArray>("key");
        for (const char* key : {"name", "description", "description-es"})
            QTest::newRow(key) << QByteArray(key);
    }
    void noTwoApplicationsReadTheSame()
    {
        QFETCH(QByteArray, key);
        Lines texts;
        for (const Section& application : sections("applications"))
            texts.append(application.value(key));
        QCOMPARE(withoutDuplicates(texts).size(), 48);
    }

    void textsAreReadAsTheyAreWritten()
    {
        QCOMPARE(env::readValue(path("applications"), QStringLiteral("acrobatreader/name")),
                 QStringLiteral("Adobe Reader DC"));
        QCOMPARE(env::readValue(path("applications"), QStringLiteral("calculator/name")),
                 QStringLiteral("Calculator"));
        for (const Section& application : sections("applications")) {
            for (const char* key : {"name", "description", "description-es"}) {
                const QString text = env::readValue(
                    path("applications"), QString::fromLatin1(application.name) + '/' + QLatin1String(key));
                QCOMPARE(text, QString::fromUtf8(application.value(key)));
                QVERIFY2(!text.contains(QRegularExpression(QStringLiteral("[\\[\\]]|  "))), application.name);
            }
        }
    }

    // --- groups

    void groupsAreTheEightOfTheLauncher()
    {
        const char* rows[][3] = {
            {"development", "Development", "Desarrollo"},
            {"games", "Games", "Juegos"},
            {"graphics", "Graphics Applications", "Aplicaciones Gráficas"},
            {"internet", "Internet Applications", "Aplicaciones de Internet"},
            {"multimedia", "Multimedia", "Multimedia"},
            {"office", "Office", "Ofimática"},
            {"other", "Other", "Otras"},
            {"utilities", "Utilities", "Utilidades"},
        };
        Lines blocks;
        for (const auto& row : rows) {
            const QByteArray id = row[0];
            blocks.append('[' + id + "]\nname=" + row[1] + "\nname-es=" + row[2] + "\nicon=" + id + '\n');
            QCOMPARE(env::readValue(path("groups"), QLatin1String(row[0]) + QLatin1String("/name")),
                     QString::fromLatin1(row[1]));
        }
        QCOMPARE(content("groups"), blocks.join('\n'));
    }

    // --- types

    void typesHaveTheirMediaInOrder()
    {
        QCOMPARE(
            names(sections("types")),
            words("application audio chemical image inode message model multipart text video x-conference"
                  " x-epoc x-world"));
    }

    void thereAre748TypesOfWhich58CarryAList()
    {
        int types = 0;
        int lists = 0;
        for (const Section& media : sections("types")) {
            QVERIFY2(!media.entries.isEmpty(), media.name);
            types += media.entries.size();
            for (const Entry& subtype : media.entries)
                lists += subtype.value.isEmpty() ? 0 : 1;
        }
        QCOMPARE(types, 748);
        QCOMPARE(lists, 58);
    }

    void noTwoSubtypesAreTheSameInLowerCase()
    {
        for (const Section& media : sections("types")) {
            Lines lower;
            for (const QByteArray& subtype : media.keys()) {
                QVERIFY2(QRegularExpression(QStringLiteral("^[A-Za-z0-9][A-Za-z0-9.+_-]*$"))
                             .match(QString::fromUtf8(subtype))
                             .hasMatch(),
                         subtype);
                lower.append(subtype.toLower());
            }
            QVERIFY2(withoutDuplicates(lower).size() == lower.size(), media.name);
        }
    }

    void inodesAreSixAndNothingOpensThem()
    {
        for (const Section& media : sections("types")) {
            if (media.name != "inode")
                continue;
            QCOMPARE(media.keys(), words("chardevice blockdevice directory-locked directory fifo socket"));
            for (const Entry& subtype : media.entries)
                QCOMPARE(subtype.value, QByteArray(""));
            return;
        }
        QFAIL("no inodes");
    }

    void listsNameApplicationsOfTheCatalogueOnceEach()
    {
        for (const Section& media : sections("types")) {
            for (const Entry& subtype : media.entries) {
                if (subtype.value.isEmpty())
                    continue;
                const Lines ids = subtype.value.split(':');
                for (const QByteArray& id : ids)
                    QVERIFY2(id == "7zip" || applicationIds().contains(id),
                             subtype.key + '=' + subtype.value);
                QVERIFY2(withoutDuplicates(ids).size() == ids.size(), subtype.key + '=' + subtype.value);
            }
        }
    }

    void everyTypeIsReadThroughItsNameAlsoOneWithAPlus()
    {
        for (const Section& media : sections("types")) {
            for (const Entry& subtype : media.entries) {
                const QString type = QString::fromLatin1(media.name + '/' + subtype.key);
                QCOMPARE(env::readValue(path("types"), type), QString::fromLatin1(subtype.value));
            }
        }
        QCOMPARE(env::readValue(path("types"), QStringLiteral("image/svg+xml")), QStringLiteral("chrome"));
        QVERIFY(env::readValue(path("types"), QStringLiteral("application/no-such-type")).isEmpty());
    }

    void preferredApplications_data()
    {
        QTest::addColumn<QByteArray>("list");
        const QByteArray word = "msword20136432:msword201332:msword2013:msword2010:libreofficewriter";
        const QByteArray excel = "msexcel20136432:msexcel201332:msexcel2013:msexcel2010:libreofficecalc";
        const QByteArray powerpoint =
            "mspowerpoint20136432:mspowerpoint201332:mspowerpoint2013:mspowerpoint2010"
            ":libreofficeimpress";
        QTest::newRow("application/pdf") << QByteArray("acrobatreader:acrobatpro:okular");
        QTest::newRow("application/msword") << word;
        QTest::newRow("application/zip") << QByteArray("7zip:ark");
        QTest::newRow("application/xml") << QByteArray("chrome");
        QTest::newRow("application/vnd.oasis.opendocument.text") << QByteArray("libreofficewriter");
        QTest::newRow("image/png") << QByteArray("paint:gwenview");
        QTest::newRow("text/csv") << excel;
        QTest::newRow("text/plain") << QByteArray("kwrite:notepad");
        QTest::newRow("inode/directory") << QByteArray("");
        QTest::newRow("message/http") << QByteArray("quilletweb");
        QTest::newRow("application/vnd.openxmlformats-officedocument.wordprocessingml.document") << word;
        QTest::newRow("application/vnd.openxmlformats-officedocument.spreadsheetml.sheet") << excel;
        QTest::newRow("application/vnd.openxmlformats-officedocument.presentationml.presentation")
            << powerpoint;
        QTest::newRow("application/vnd.ms-powerpoint") << powerpoint;
        QTest::newRow("application/vnd.oasis.opendocument.spreadsheet") << QByteArray("libreofficecalc");
        QTest::newRow("application/msaccess")
            << QByteArray("msaccess20136432:msaccess201332:msaccess2013:msaccess2010");
        QTest::newRow("message/rfc822")
            << QByteArray("msoutlook20136432:msoutlook201332:msoutlook2013:msoutlook2010:kmail");
        QTest::newRow("text/html") << QByteArray("chrome:quilletweb");
        QTest::newRow("image/svg+xml") << QByteArray("chrome");
        QTest::newRow("image/jpeg") << QByteArray("paint:gwenview");
        QTest::newRow("image/vnd.dwg") << QByteArray("acadlt2013:draftsight");
    }
    void preferredApplications()
    {
        QFETCH(QByteArray, list);
        const Lines type = QByteArray(QTest::currentDataTag()).split('/');
        bool found = false;
        for (const Section& media : sections("types")) {
            if (media.name == type[0] && media.keys().contains(type[1])) {
                found = true;
                QCOMPARE(media.value(type[1]), list);
            }
        }
        QVERIFY(found);
        QCOMPARE(env::readValue(path("types"), QLatin1String(QTest::currentDataTag())),
                 QString::fromLatin1(list));
    }

    // --- extensions

    void thereAre817ExtensionsAndTheLastLineHasNoEnd()
    {
        QCOMPARE(extensions().size(), 817);
        QVERIFY(!content("extensions").endsWith('\n'));
    }

    void everyLineIsAnExtensionAndAType()
    {
        const QRegularExpression form(QStringLiteral("^\\.[^: ]+: [^: ]+/[^: ]+$"));
        for (const QByteArray& line : content("extensions").split('\n'))
            QVERIFY2(form.match(QString::fromUtf8(line)).hasMatch(), line);
    }

    void extensionsAreLowerCaseUniqueAndSortedByTheExtensionAlone()
    {
        Lines all;
        for (const Extension& line : extensions()) {
            QCOMPARE(line.extension, line.extension.toLower());
            all.append(line.extension);
        }
        QCOMPARE(all, withoutDuplicates(all));
        // Sorted as whole lines, these would stand the other way round.
        QVERIFY(all.contains(".c"));
        QCOMPARE(all.indexOf(".c++"), all.indexOf(".c") + 1);
        QVERIFY(all.indexOf(".cab") > all.indexOf(".c++"));
    }

    void everyTypeOfAnExtensionIsAmongTheTypes()
    {
        Lines types;
        for (const Section& media : sections("types")) {
            for (const QByteArray& subtype : media.keys())
                types.append(media.name + '/' + subtype);
        }
        for (const Extension& line : extensions())
            QVERIFY2(types.contains(line.type), line.extension + ": " + line.type);
    }

    // A suffix without a line takes the first line that it begins; there has to be one to show it.
    void someExtensionWithoutALineBeginsAnother()
    {
        QVERIFY(typeOf(".do").isNull());
        QVERIFY(!typeOf(".doc").isNull());
    }

    void extensionsThatUsersMeetHaveTheirType_data()
    {
        QTest::addColumn<QByteArray>("type");
        const auto row = [](const char* extension, const char* type) {
            QTest::newRow(extension) << QByteArray(type);
        };
        row(".123", "application/vnd.lotus-1-2-3");
        row(".a", "application/octet-stream");
        row(".pdf", "application/pdf");
        row(".doc", "application/msword");
        row(".docx", "application/vnd.openxmlformats-officedocument.wordprocessingml.document");
        row(".xls", "application/vnd.ms-excel");
        row(".xlsx", "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet");
        row(".ppt", "application/vnd.ms-powerpoint");
        row(".pptx", "application/vnd.openxmlformats-officedocument.presentationml.presentation");
        row(".odt", "application/vnd.oasis.opendocument.text");
        row(".ods", "application/vnd.oasis.opendocument.spreadsheet");
        row(".odp", "application/vnd.oasis.opendocument.presentation");
        row(".odg", "application/vnd.oasis.opendocument.graphics");
        row(".rtf", "application/rtf");
        row(".mdb", "application/msaccess");
        row(".accdb", "application/msaccess");
        row(".msg", "application/vnd.ms-outlook");
        row(".eml", "message/rfc822");
        row(".ics", "text/calendar");
        row(".vcf", "text/vcard");
        row(".csv", "text/csv");
        row(".txt", "text/plain");
        row(".log", "text/plain");
        row(".html", "text/html");
        row(".htm", "text/html");
        row(".xml", "application/xml");
        row(".json", "application/json");
        row(".css", "text/css");
        row(".js", "text/javascript");
        row(".c", "text/x-csrc");
        row(".h", "text/x-chdr");
        row(".py", "text/x-python");
        row(".sh", "application/x-sh");
        row(".bat", "application/x-msdos-program");
        row(".exe", "application/vnd.microsoft.portable-executable");
        row(".dll", "application/vnd.microsoft.portable-executable");
        row(".jpg", "image/jpeg");
        row(".jpeg", "image/jpeg");
        row(".png", "image/png");
        row(".gif", "image/gif");
        row(".bmp", "image/bmp");
        row(".tif", "image/tiff");
        row(".tiff", "image/tiff");
        row(".svg", "image/svg+xml");
        row(".webp", "image/webp");
        row(".dwg", "image/vnd.dwg");
        row(".dxf", "image/vnd.dxf");
        row(".dcm", "application/dicom");
        row(".zip", "application/zip");
        row(".7z", "application/x-7z-compressed");
        row(".rar", "application/vnd.rar");
        row(".tar", "application/x-tar");
        row(".gz", "application/gzip");
        row(".iso", "application/x-iso9660-image");
        row(".mp3", "audio/mpeg");
        row(".wav", "audio/x-wav");
        row(".mp4", "video/mp4");
        row(".avi", "video/x-msvideo");
        row(".mov", "video/quicktime");
        row(".mkv", "video/x-matroska");
        row(".ttf", "application/x-font-ttf");
        row(".woff", "application/font-woff");
        row(".epub", "application/epub+zip");
    }
    void extensionsThatUsersMeetHaveTheirType() { QTEST(typeOf(QTest::currentDataTag()), "type"); }

    void thereAreFortyPicturesOfApplicationsWithADefaultOneAndEightOfGroups()
    {
        QCOMPARE(QDir(QStringLiteral(":/icons/applications")).entryList().size(), 41);
        QVERIFY(QFile::exists(QStringLiteral(":/icons/applications/default.png")));
        QStringList groups;
        for (const Section& group : sections("groups"))
            groups.append(QString::fromUtf8(group.value("icon")) + QStringLiteral(".png"));
        QCOMPARE(QDir(QStringLiteral(":/icons/groups")).entryList(), groups);
    }
};

QTEST_GUILESS_MAIN(CatalogueFilesTest)
#include "tst_cataloguefiles.moc"
