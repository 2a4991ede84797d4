#include "files/fileiconprovider.h"

#include "catalogue/application.h"
#include "catalogue/cataloguefiles.h"
#include "env/serverslot.h"
#include "server/twclient.h"
#include "support/quillettest.h"
#include "support/twserver/twserver.h"

#include <QDir>
#include <QFileInfo>
#include <QtTest>

#include <memory>

namespace {

QImage image(const QIcon& icon)
{
    return icon.pixmap(64, 64).toImage();
}

QImage picture(const char* path)
{
    return image(QIcon(QLatin1String(path)));
}

} // namespace

class FileIconProviderTest : public QuilletTest
{
    Q_OBJECT

    FileIconProvider m_provider;

    QString file(const QString& name)
    {
        const QString path = sandbox().scratch() + QLatin1Char('/') + name;
        Sandbox::writeFile(path, "x");
        return path;
    }

private slots:
    void init()
    {
        QuilletTest::init();
        catalogue::loadExtensionMap();
    }

    void everyTypeHasOneOfTwoPictures_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("isFolder");
        QTest::newRow("folder") << int(QFileIconProvider::Folder) << true;
        QTest::newRow("file") << int(QFileIconProvider::File) << false;
        QTest::newRow("computer") << int(QFileIconProvider::Computer) << false;
        QTest::newRow("desktop") << int(QFileIconProvider::Desktop) << false;
        QTest::newRow("trash can") << int(QFileIconProvider::Trashcan) << false;
        QTest::newRow("network") << int(QFileIconProvider::Network) << false;
        QTest::newRow("drive") << int(QFileIconProvider::Drive) << false;
    }
    void everyTypeHasOneOfTwoPictures()
    {
        QFETCH(int, type);
        QFETCH(bool, isFolder);
        const QIcon icon = m_provider.icon(static_cast<QFileIconProvider::IconType>(type));
        QCOMPARE(image(icon), picture(isFolder ? ":/icons/64x64/folder.png" : ":/icons/64x64/openwith.png"));
    }

    void foldersHaveTheFoldersPictureWhateverTheyAreCalled()
    {
        const QString folder = sandbox().scratch() + QStringLiteral("/photos.txt");
        QVERIFY(QDir().mkpath(folder));
        QCOMPARE(image(m_provider.icon(QFileInfo(folder))), picture(":/icons/64x64/folder.png"));
    }

    void filesHaveTheIconOfTheirApplication()
    {
        Application::setValidApplications({"notepad"});
        QCOMPARE(image(m_provider.icon(QFileInfo(file("letter.txt")))),
                 image(Application::iconForFile(QFileInfo("letter.txt"))));
        QVERIFY(image(m_provider.icon(QFileInfo(file("letter.txt")))) !=
                picture(":/icons/64x64/openwith.png"));
    }

    void filesWithoutAnApplicationHaveTheOpenWithPicture_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("no suffix") << "README";
        QTest::newRow("an unknown one") << "a.unknown";
        QTest::newRow("another case") << "a.TXT";
        QTest::newRow("a dot at the end") << "a._";
    }
    void filesWithoutAnApplicationHaveTheOpenWithPicture()
    {
        QFETCH(QString, name);
        Application::setValidApplications({"notepad"});
        QCOMPARE(image(m_provider.icon(QFileInfo(file(name)))), picture(":/icons/64x64/openwith.png"));
    }

    void aFileWithAnApplicationIsLookedUpTwiceAndOneWithoutOnce()
    {
        TwServer server;
        TwData::Application application;
        application.name = QStringLiteral("Writer");
        application.icon = Sandbox::readFile(QStringLiteral(":/icons/64x64/folder.png"));
        server.data.applications.insert(QStringLiteral("writer"), application);
        server.data.valid.append(QStringLiteral("writer"));
        server.data.extensions.append(TwData::Extension{".txt", {"writer"}});
        server.data.extensions.append(TwData::Extension{".none", {"other"}});
        QVERIFY(server.start());
        sandbox().writeSettings("[Server]\nTidewellServerAddress=127.0.0.1\nTidewellServerPort=" +
                                QByteArray::number(server.port()) + '\n');
        TWClient client;
        QVERIFY(client.connectToServer());
        env::setServerClient(&client);
        Application::setValidApplications({"writer"});

        const auto requestsFor = [&](const QString& name) {
            const int before = server.requests().size();
            m_provider.icon(QFileInfo(name));
            return server.requests().mid(before);
        };
        const QList<QByteArray> once = requestsFor(QStringLiteral("a.none"));
        const QList<QByteArray> twice = requestsFor(QStringLiteral("a.txt"));
        env::setServerClient(nullptr);
        QVERIFY(!once.isEmpty());
        QCOMPARE(once.count(once.first()), 1);
        QVERIFY(!twice.isEmpty());
        QCOMPARE(twice.mid(0, twice.size() / 2), twice.mid(twice.size() / 2));
    }
};

QTEST_MAIN(FileIconProviderTest)
#include "tst_fileiconprovider.moc"
