// What is in the packages: all that the program needs, nothing else, and what has to come with it by its
// licences.
#include "support/installstory.h"
#include "support/sandbox.h"

#include <QCryptographicHash>
#include <QDir>
#include <QRegularExpression>
#include <QtTest>

using packages::filesOf;

namespace {

const QString present = QStringLiteral("present");

// Loaded by Qt while the program runs, not by Windows at its start.
const QStringList plugins = {"imageformats/qgif.dll", "imageformats/qico.dll", "imageformats/qjpeg.dll",
                             "platforms/qwindows.dll", "styles/qwindowsvistastyle.dll"};

// What comes with Windows, of the version that is required or later. Look each one up before it is added.
const QStringList windowsOwn = {"advapi32.dll", "d3d11.dll",    "dnsapi.dll",   "dwmapi.dll",   "dxgi.dll",
                                "gdi32.dll",    "imm32.dll",    "iphlpapi.dll", "kernel32.dll", "mpr.dll",
                                "msvcrt.dll",   "netapi32.dll", "ole32.dll",    "oleaut32.dll", "shell32.dll",
                                "user32.dll",   "userenv.dll",  "uxtheme.dll",  "version.dll",  "winmm.dll",
                                "ws2_32.dll",   "wtsapi32.dll"};

QStringList imports(const QString& file)
{
    QProcess process;
    process.start(QStringLiteral("x86_64-w64-mingw32-objdump"), {"-p", file});
    process.waitForFinished();
    QStringList names;
    QRegularExpression line(QStringLiteral("^\tDLL Name: (.*)$"), QRegularExpression::MultilineOption);
    auto matches = line.globalMatch(QString::fromLatin1(process.readAllStandardOutput()));
    while (matches.hasNext())
        names << matches.next().captured(1);
    return names;
}

} // namespace

class PackageStory : public QObject, private InstallStory
{
    Q_OBJECT

    QTemporaryDir m_temporary;
    QString m_unpacked;
    QStringList m_files;

    QByteArray file(const QString& name) const { return Sandbox::readFile(m_unpacked + '/' + name); }

private slots:
    void initTestCase()
    {
        m_unpacked = packages::unpack(present, m_temporary.path());
        QCOMPARE(QFileInfo(m_unpacked).fileName(), QStringLiteral("quillet-" PROJECT_VERSION));
        m_files = filesOf(m_unpacked);
    }

    void theZipHoldsTheProductAndItsPapers()
    {
        const QStringList product = QStringList{"Qt5Core.dll",
                                                "Qt5Gui.dll",
                                                "Qt5Network.dll",
                                                "Qt5Widgets.dll",
                                                "libgcc_s_seh-1.dll",
                                                "libstdc++-6.dll",
                                                "libwinpthread-1.dll",
                                                "licenses/LICENSE.GPL3",
                                                "licenses/LICENSE.LGPL3",
                                                "licenses/copyright",
                                                "quillet-session.exe",
                                                "quillet.exe",
                                                "quillet_es.qm"} +
                                    plugins;
        QStringList expected = product;
        expected << QStringLiteral("licenses/README.txt") << QStringLiteral("licenses/build-qt.sh")
                 << QStringLiteral("licenses/gcc-copyright") << QStringLiteral("licenses/mingw-w64-copyright")
                 << QStringLiteral("quillet.ini.sample");
        expected.sort();
        QCOMPARE(m_files, expected);
        for (const QString& name : product)
            QVERIFY2(file(name) == Sandbox::readFile(WineSession::dist() + '/' + name), qPrintable(name));
        QCOMPARE(file(QStringLiteral("quillet.ini.sample")), sample());
    }

    void theSumsAreTheFiles()
    {
        QByteArray expected;
        for (const QString& path : {packages::setup(present), packages::archive(present)}) {
            const QByteArray sum =
                QCryptographicHash::hash(Sandbox::readFile(path), QCryptographicHash::Sha256).toHex();
            expected += sum + "  " + QFileInfo(path).fileName().toLatin1() + '\n';
        }
        QCOMPARE(Sandbox::readFile(packages::folder(present) + QStringLiteral("/SHA256SUMS")), expected);
    }

    void everyLibraryIsNeededAndNoneIsMissing()
    {
        QStringList libraries;
        for (const QString& name : qAsConst(m_files)) {
            if (name.endsWith(QLatin1String(".dll")))
                libraries << name;
        }
        QStringList reached;
        QStringList next = {QStringLiteral("quillet.exe"), QStringLiteral("quillet-session.exe")};
        next += plugins;
        while (!next.isEmpty()) {
            const QString name = next.takeFirst();
            QVERIFY2(m_files.contains(name), qPrintable(name));
            reached << name;
            const QStringList wanted = imports(m_unpacked + '/' + name);
            QVERIFY2(wanted.contains(QStringLiteral("KERNEL32.dll")), qPrintable(name)); // they could be read
            for (const QString& import : wanted) {
                if (m_files.contains(import)) {
                    if (!reached.contains(import) && !next.contains(import))
                        next << import;
                } else {
                    QVERIFY2(windowsOwn.contains(import.toLower()), qPrintable(name + " needs " + import));
                }
            }
        }
        for (const QString& library : qAsConst(libraries))
            QVERIFY2(reached.contains(library), qPrintable(library));
    }

    void theLicencesAreThereAndSayFromWhatQtWasBuilt()
    {
        const QByteArray source = Sandbox::readFile(WineSession::dist() + QStringLiteral("/licenses/SOURCE"))
                                      .replace("Source package: ", "")
                                      .trimmed();
        QVERIFY2(QRegularExpression(QStringLiteral("^qtbase-opensource-src 5\\.15\\.\\S+$"))
                     .match(QString::fromLatin1(source))
                     .hasMatch(),
                 source.constData());
        const QByteArray readme = file(QStringLiteral("licenses/README.txt"));
        QVERIFY(readme.contains("\r\n        " + source + "\r\n"));
        QVERIFY(!readme.contains('@')); // what is to be filled in
        QVERIFY(file(QStringLiteral("licenses/LICENSE.GPL3")).contains("GNU GENERAL PUBLIC LICENSE"));
        QVERIFY(file(QStringLiteral("licenses/LICENSE.LGPL3")).contains("GNU LESSER GENERAL PUBLIC LICENSE"));
        QVERIFY(file(QStringLiteral("licenses/copyright")).contains("qtbase"));
        QVERIFY(file(QStringLiteral("licenses/gcc-copyright")).contains("GCC RUNTIME LIBRARY EXCEPTION"));
        QVERIFY(file(QStringLiteral("licenses/mingw-w64-copyright")).contains("winpthreads"));
        QVERIFY(readme.contains("modify these libraries") && readme.contains("reverse engineer"));
        QVERIFY(file(QStringLiteral("licenses/build-qt.sh")).contains("configure"));
    }

    // Without an installation, in a folder with a blank in its name.
    void theProgramStartsFromTheUnpackedZip()
    {
        begin(QStringLiteral("package-unpacked"));
        if (QTest::currentTestFailed())
            return;
        QVERIFY(!packages::unpack(present, session->driveC() + QStringLiteral("/Our tools")).isEmpty());
        QProcess process;
        session->startAsUser(
            process, QStringLiteral("C:\\Our tools\\quillet-" PROJECT_VERSION "\\quillet-session.exe"), {},
            {}, session->home());
        const QString log = session->home() + QStringLiteral("/.quillet.log");
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(log) && Sandbox::readFile(log).contains("Calling manager"),
                                 patience);
        QVERIFY(session->killProgram(QStringLiteral("quillet.exe")));
        QVERIFY(process.waitForFinished(patience));
        session.reset();
    }
};

QTEST_GUILESS_MAIN(PackageStory)
#include "tst_package.moc"
