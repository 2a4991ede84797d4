#include "files/filemodel.h"

#include "files/icondelegate.h"
#include "support/quillettest.h"

#include <QDir>
#include <QFileIconProvider>
#include <QListView>
#include <QSignalSpy>
#include <QThread>
#include <QtTest>

#include <atomic>

namespace {

// Remembers for which files it was asked, and on which thread.
class AskedProvider : public QFileIconProvider
{
public:
    QIcon icon(IconType type) const override
    {
        ++pictures;
        return colored(type == Folder ? Qt::blue : Qt::white);
    }
    QIcon icon(const QFileInfo& info) const override
    {
        isElsewhere = isElsewhere || QThread::currentThread() != qApp->thread();
        asked.append(info.fileName());
        QThread::msleep(time);
        return colored(Qt::red);
    }

    static QIcon colored(const QColor& color)
    {
        QPixmap picture(64, 64);
        picture.fill(color);
        return QIcon(picture);
    }

    unsigned long time = 0;   // ms, for a look
    mutable int pictures = 0; // of types
    mutable QStringList asked;
    mutable std::atomic<bool> isElsewhere{false};
};

QColor colorOf(const QVariant& icon)
{
    return icon.value<QIcon>().pixmap(16, 16).toImage().pixelColor(8, 8);
}

} // namespace

class FileModelTest : public QuilletTest
{
    Q_OBJECT

    AskedProvider m_provider;
    std::unique_ptr<FileModel> m_model;

    QString path(const QString& name) { return sandbox().scratch() + QLatin1Char('/') + name; }
    QModelIndex index(const QString& name) { return m_model->index(path(name)); }
    QColor color(const QString& name) { return colorOf(index(name).data(Qt::DecorationRole)); }
    // Nobody says of them that they have been read.
    void showDrives()
    {
        QSignalSpy sorted(m_model.get(), SIGNAL(layoutChanged()));
        m_model->setRootPath(QString());
        QTRY_VERIFY(!sorted.isEmpty());
    }
    // As a view that paints again when the model was sorted.
    int askedAfterPainting(const QString& name)
    {
        color(name);
        return m_provider.asked.size();
    }
    void load(int files)
    {
        for (int i = 0; i < files; ++i)
            Sandbox::writeFile(path(QStringLiteral("f%1.txt").arg(i, 5, 10, QLatin1Char('0'))), "x");
        QDir().mkpath(path("folder"));
        QSignalSpy loaded(m_model.get(), SIGNAL(directoryLoaded(QString)));
        m_model->setRootPath(sandbox().scratch());
        QVERIFY(loaded.wait(30000));
        QTRY_COMPARE(m_model->rowCount(m_model->index(sandbox().scratch())), files + 1);
        m_model->sort(0); // it would do so a little later
    }

private slots:
    void init()
    {
        QuilletTest::init();
        m_provider.asked.clear();
        m_provider.isElsewhere = false;
        m_provider.time = 0;
        m_provider.pictures = 0;
        m_model = std::make_unique<FileModel>(&m_provider);
    }
    void cleanup()
    {
        m_model.reset();
        QuilletTest::cleanup();
    }

    void listingAFolderAsksForNoIcon()
    {
        load(100);
        QTest::qWait(50);
        QCOMPARE(m_provider.asked, QStringList());
    }

    void iconsAreAskedForOnThisThreadOnly()
    {
        load(100);
        QListView view;
        view.setViewMode(QListView::IconMode);
        view.setGridSize(QSize(128, 128));
        view.setItemDelegate(new IconDelegate(QSize(128, 128), &view));
        view.resize(600, 400);
        view.setModel(m_model.get());
        view.setRootIndex(m_model->index(sandbox().scratch()));
        view.show();
        QTRY_VERIFY(!m_provider.asked.isEmpty());
        QVERIFY(!m_provider.isElsewhere);
        QTest::qWait(50);
        // Those in view, and those that were before the folder was sorted.
        QVERIFY2(m_provider.asked.size() < 50, qPrintable(m_provider.asked.join(' ')));
    }

    void anIconComesOnceTheEntryWasAskedFor()
    {
        load(3);
        QSignalSpy changed(m_model.get(), SIGNAL(dataChanged(QModelIndex, QModelIndex, QVector<int>)));
        QCOMPARE(color("f00001.txt"), QColor(Qt::white));
        QCOMPARE(m_provider.asked, QStringList()); // not while a view paints
        QTRY_COMPARE(m_provider.asked, QStringList("f00001.txt"));
        QCOMPARE(color("f00001.txt"), QColor(Qt::red));
        QCOMPARE(changed.last().value(0).toModelIndex(), index("f00001.txt"));
        QCOMPARE(changed.last().value(2).value<QVector<int>>(), QVector<int>{Qt::DecorationRole});
    }

    void anIconIsRemembered()
    {
        load(3);
        color("f00001.txt");
        QTRY_COMPARE(m_provider.asked.size(), 1);
        for (int i = 0; i < 10; ++i)
            color("f00001.txt");
        QTest::qWait(50);
        QCOMPARE(m_provider.asked.size(), 1);
    }

    void anEntryThatChangesIsAskedForAgain()
    {
        load(3);
        color("f00001.txt");
        QTRY_COMPARE(m_provider.asked.size(), 1);
        const QModelIndex entry = index("f00001.txt");
        emit m_model->dataChanged(entry, entry.sibling(entry.row(), 3)); // as when the file was written
        QCOMPARE(color("f00001.txt"), QColor(Qt::white));
        QTRY_COMPARE(m_provider.asked.size(), 2);
    }

    void anEntryThatGoesIsForgotten()
    {
        load(3);
        color("f00001.txt");
        QTRY_COMPARE(m_provider.asked.size(), 1);
        QVERIFY(m_model->remove(index("f00001.txt")));
        QTRY_VERIFY(!index("f00001.txt").isValid());
        Sandbox::writeFile(path("f00001.txt"), "another");
        QTRY_VERIFY(index("f00001.txt").isValid());
        QTRY_COMPARE(askedAfterPainting("f00001.txt"), 2);
    }

    void anotherFolderForgetsEverything()
    {
        load(3);
        color("f00001.txt");
        QTRY_COMPARE(m_provider.asked.size(), 1);
        m_model->setRootPath(path("folder"));
        QTRY_COMPARE(askedAfterPainting("f00001.txt"), 2);
    }

    void foldersNeedNoLookUp()
    {
        load(1);
        QCOMPARE(color("folder"), QColor(Qt::blue));
        QTest::qWait(50);
        QCOMPARE(m_provider.asked, QStringList());
    }

    void thePicturesOfFoldersAndFilesAreMadeOnce()
    {
        load(3);
        for (int i = 0; i < 10; ++i)
            for (const char* const name : {"folder", "f00000.txt", "f00001.txt"})
                color(name);
        QCOMPARE(m_provider.pictures, 2);
    }

    void otherColumnsAndNoEntryHaveNoIcon()
    {
        load(1);
        const QModelIndex entry = index("f00000.txt");
        QVERIFY(!entry.sibling(entry.row(), 1).data(Qt::DecorationRole).isValid());
        QVERIFY(!m_model->data(QModelIndex(), Qt::DecorationRole).isValid());
        QCOMPARE(entry.data().toString(), QStringLiteral("f00000.txt"));
        QCOMPARE(m_provider.asked, QStringList());
    }

    void whatWasPaintedLastIsLookedUpFirst()
    {
        load(5);
        for (int i : {0, 1, 2, 0, 3})
            color(QStringLiteral("f0000%1.txt").arg(i));
        QTRY_COMPARE(m_provider.asked.size(), 4);
        QCOMPARE(m_provider.asked, QStringList({"f00003.txt", "f00000.txt", "f00002.txt", "f00001.txt"}));
    }

    void ofManyThatWerePaintedTheLastAreLookedUp()
    {
        load(1100);
        for (int i = 0; i < 1100; ++i)
            color(QStringLiteral("f%1.txt").arg(i, 5, 10, QLatin1Char('0')));
        QTRY_COMPARE(m_provider.asked.size(), 1000);
        QTest::qWait(50);
        QCOMPARE(m_provider.asked.size(), 1000);
        QCOMPARE(m_provider.asked.first(), QStringLiteral("f01099.txt"));
        QCOMPARE(m_provider.asked.last(), QStringLiteral("f00100.txt"));
    }

    void whatIsInNoViewAnyMoreIsNotAskedFor()
    {
        load(2);
        color("f00000.txt");
        m_model->setRootPath(path("folder"));
        QTest::qWait(50);
        QCOMPARE(m_provider.asked, QStringList());
    }

    void whatIsGoneWhenItsTurnComesIsNotAskedFor()
    {
        load(3);
        connect(m_model.get(), &FileModel::rowsAboutToBeRemoved, this, [this] { color("f00001.txt"); });
        QSignalSpy changed(m_model.get(), SIGNAL(dataChanged(QModelIndex, QModelIndex, QVector<int>)));
        QVERIFY(m_model->remove(index("f00001.txt")));
        QTRY_VERIFY(!index("f00001.txt").isValid());
        color("f00002.txt"); // looked up first
        color("f00000.txt");
        QTRY_COMPARE(m_provider.asked, QStringList({"f00000.txt", "f00002.txt"}));
        QTest::qWait(50);
        QCOMPARE(m_provider.asked.size(), 2);
        for (const QList<QVariant>& arguments : changed)
            QVERIFY(arguments.value(0).toModelIndex().isValid());
    }

    void whileAFolderIsReadIconsWait()
    {
        load(5);
        showDrives();
        m_provider.time = 25;
        QElapsedTimer sincePainting;
        sincePainting.start();
        for (int i = 0; i < 5; ++i)
            color(QStringLiteral("f0000%1.txt").arg(i));
        QTest::qWait(50);
        const int asked = m_provider.asked.size();
        if (sincePainting.elapsed() < 250)
            QCOMPARE(asked, 0);
        QTRY_COMPARE(m_provider.asked.size(), 5); // they get their turns all the same
    }

    void afterAFolderWasReadIconsDoNotWait()
    {
        load(5);
        showDrives();
        color("f00000.txt");
        emit m_model->directoryLoaded(m_model->rootPath());
        QTRY_COMPARE(m_provider.asked.size(), 1);
        color("f00001.txt");
        color("f00002.txt");
        for (int round = 0; round < 10 && m_provider.asked.size() < 3; ++round)
            QCoreApplication::processEvents();
        QCOMPARE(m_provider.asked.size(), 3);
    }

    void whatWasInViewBeforeTheFolderWasSortedIsNotAskedFor()
    {
        load(5);
        color("f00000.txt");
        color("f00001.txt");
        m_model->sort(0, Qt::DescendingOrder);
        color("f00004.txt");
        QTRY_COMPARE(m_provider.asked, QStringList("f00004.txt"));
        QTest::qWait(50);
        QCOMPARE(m_provider.asked, QStringList("f00004.txt"));
    }

    void slowIconsLetTheEventLoopRunInBetween()
    {
        load(5);
        m_provider.time = 25;
        QList<int> seen;
        connect(m_model.get(), &FileModel::dataChanged, this, [this, &seen] {
            QMetaObject::invokeMethod(
                this, [this, &seen] { seen.append(m_provider.asked.size()); }, Qt::QueuedConnection);
        });
        for (int i = 0; i < 5; ++i)
            color(QStringLiteral("f0000%1.txt").arg(i));
        QTRY_COMPARE(seen.size(), 5);
        QCOMPARE(seen, QList<int>({1, 2, 3, 4, 5}));
    }

    void longNamesWithoutBlanksMayBreakAfterPunctuation()
    {
        const IconDelegate delegate(QSize(128, 64), nullptr);
        const QChar mayBreak(0x200B);
        QCOMPARE(delegate.displayText(QStringLiteral("a_long-name.without"), QLocale()),
                 QStringLiteral("a_%1long-%1name.%1without").arg(mayBreak));
        for (const QString& name :
             {QStringLiteral("a_long-name.with a blank"), QStringLiteral("a_short-name.txt")})
            QCOMPARE(delegate.displayText(name, QLocale()), name);
        QCOMPARE(delegate.sizeHint({}, {}), QSize(128, 64));
    }

    void namesStandBelowTheMiddleOfTheirPictures_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("shorter than the picture") << "HH";
        QTest::newRow("longer") << "HHHHHHHHHH.HH";
        QTest::newRow("two lines") << "HHHHHHHHH HHHHHHHHH";
    }
    void namesStandBelowTheMiddleOfTheirPictures()
    {
        QFETCH(QString, name);
        load(0);
        Sandbox::writeFile(path(name), "x");
        QTRY_COMPARE(m_model->rowCount(m_model->index(sandbox().scratch())), 2);
        QListView view;
        view.setViewMode(QListView::IconMode);
        view.setIconSize(QSize(64, 64));
        view.setGridSize(QSize(128, 128));
        view.setWordWrap(true);
        view.setItemDelegate(new IconDelegate(QSize(128, 128), &view));
        view.resize(600, 400);
        view.setModel(m_model.get());
        view.setRootIndex(m_model->index(sandbox().scratch()));
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QTRY_COMPARE(color(name), QColor(Qt::red));
        const QRect cell = view.visualRect(index(name));
        const QImage painted = view.viewport()->grab(cell).toImage();
        QRect picture;
        QRect letters;
        for (int y = 0; y < painted.height(); ++y) {
            for (int x = 0; x < painted.width(); ++x) {
                const QColor pixel = painted.pixelColor(x, y);
                if (pixel == QColor(Qt::red))
                    picture |= QRect(x, y, 1, 1);
                else if (pixel.lightness() < 128)
                    letters |= QRect(x, y, 1, 1);
            }
        }
        QCOMPARE(picture.size(), QSize(64, 64));
        QVERIFY(qAbs(picture.left() + picture.right() - (painted.width() - 1)) <= 2);
        QVERIFY(letters.top() > picture.bottom());
        QVERIFY(letters.width() > 10);
        QVERIFY2(qAbs(letters.left() + letters.right() - picture.left() - picture.right()) <= 6,
                 qPrintable(QStringLiteral("%1 to %2").arg(letters.left()).arg(letters.right())));
    }

    void aModelThatGoesInTheMiddleWaitsForNobody()
    {
        load(2000);
        for (int i = 0; i < 2000; ++i)
            color(QStringLiteral("f%1.txt").arg(i, 5, 10, QLatin1Char('0')));
        QTRY_VERIFY(!m_provider.asked.isEmpty());
        m_model->setRootPath(QDir::rootPath());
        m_model = std::make_unique<FileModel>(&m_provider); // the other's thread may be at work
        const int asked = m_provider.asked.size();
        QTest::qWait(50);
        QCOMPARE(m_provider.asked.size(), asked);
    }
};

QTEST_MAIN(FileModelTest)
#include "tst_filemodel.moc"
