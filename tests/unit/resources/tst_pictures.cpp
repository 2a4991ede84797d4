// The pictures that are compiled in: each one that the program or its catalogue names, its size, and what all
// of them have in common on the screen.
#include "catalogue/applicationicon.h"
#include "catalogue/cataloguefiles.h"
#include "resources/resources.h"
#include "support/quillettest.h"

#include <QDirIterator>
#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QSettings>
#include <QtTest>

#include <algorithm>

namespace {

struct Folder
{
    const char* path;
    int size; // pixels, each way
    const char* names;
};
// What stands where: places, context menus and tools; the file manager's row; dialogs, places and the scroll
// arrows.
const Folder folders[] = {
    {":/icons/32x32", 32,
     "accept back cancel config copy cut down folder-docs folder-new forward logo logoff paste remove rename "
     "terminate up"},
    {":/icons/48x48", 48, "copy cut folder-new icon-view list-view paste remove rename up"},
    {":/icons/64x64", 64, "accept back cancel folder folder-home forward logo openwith power-pressed"},
    {":/icons/applications", 64, "default dropbox google-drive mimetypes userconfig"},
    {":/icons/groups", 64, "development games graphics internet multimedia office other utilities"},
    {":/icons/other", 64, "es_flag us_uk_flag"},
    {":/icons/other", 256, "tidewell"},
};

QString path(const QString& folder, const QString& name)
{
    return QStringLiteral("%1/%2.png").arg(folder, name);
}

// Every picture that is named, with its size.
QMap<QString, int> namedPictures()
{
    QMap<QString, int> named;
    for (const Folder& folder : folders) {
        const QStringList names = QString::fromLatin1(folder.names).split(QLatin1Char(' '));
        for (const QString& name : names)
            named.insert(path(QLatin1String(folder.path), name), folder.size);
    }
    const QStringList ids = catalogue::applicationIds();
    for (const QString& id : ids) {
        named.insert(QStringLiteral(":/icons/applications/") +
                         catalogue::applicationValue(id, QStringLiteral("icon")),
                     64);
    }
    return named;
}

// --- How a picture has to look

QImage asPixels(const QImage& picture)
{
    return picture.convertToFormat(QImage::Format_ARGB32);
}

// The box around all that is seen.
QRect boxOf(const QImage& picture)
{
    constexpr int visible = 24; // alpha; less is the rim of a curve
    QRect box;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qAlpha(picture.pixel(x, y)) >= visible)
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

// The part of the square that a picture covers: its weight beside its neighbours.
qreal coveredPart(const QImage& picture)
{
    qreal sum = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            sum += qAlpha(picture.pixel(x, y));
    }
    return sum / 255 / (picture.width() * picture.height());
}

// The part of what is seen that is clearly lighter or darker than an even colour.
qreal contrastingPart(const QImage& picture, QRgb background)
{
    constexpr int opaque = 128;
    constexpr int clearly = 60; // of 255 greys
    int seen = 0;
    int contrasting = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            if (qAlpha(pixel) < opaque)
                continue;
            ++seen;
            contrasting += std::abs(qGray(pixel) - qGray(background)) > clearly;
        }
    }
    return seen == 0 ? 0.0 : qreal(contrasting) / seen;
}

// What is wrong with how a picture fills its square, whose side is 64 units of the drawings' grid.
QStringList faultsOfPlace(const QImage& picture)
{
    const QRect box = boxOf(picture);
    if (box.isEmpty())
        return {QStringLiteral("empty")};
    QStringList faults;
    const qreal unit = picture.width() / 64.0;
    const int margin = picture.width() * 4 / 64;
    if (!picture.rect().adjusted(margin, margin, -margin, -margin).contains(box))
        faults.append(QStringLiteral("in its margins"));
    const QPointF off = QRectF(box).center() - QRectF(picture.rect()).center();
    if (std::abs(off.x()) > 2 * unit || std::abs(off.y()) > 2 * unit)
        faults.append(QStringLiteral("not in the middle"));
    if (std::max(box.width(), box.height()) < 54 * unit || std::min(box.width(), box.height()) < 38 * unit)
        faults.append(QStringLiteral("small"));
    return faults;
}

// What is wrong with its weight and its contrast.
QStringList faultsOfWeight(const QImage& picture)
{
    QStringList faults;
    if (coveredPart(picture) < 0.28)
        faults.append(QStringLiteral("light"));
    if (coveredPart(picture) > 0.76)
        faults.append(QStringLiteral("heavy"));
    if (contrastingPart(picture, 0xFFE6EAED) < 0.3)
        faults.append(QStringLiteral("lost on the panel"));
    if (contrastingPart(picture, 0xFFFFFFFF) < 0.3)
        faults.append(QStringLiteral("lost on white"));
    return faults;
}

// As the list view shows them, of 22 pixels.
bool lookAlike(const QImage& one, const QImage& other)
{
    constexpr int enough = 40; // of 484 pixels
    constexpr int clearly = 96;
    const auto small = [](const QImage& picture) {
        QImage sample(22, 22, QImage::Format_RGB32);
        sample.fill(0xFFE6EAED);
        QPainter painter(&sample);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(sample.rect(),
                          picture.scaled(22, 22, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        return sample;
    };
    const QImage a = small(one);
    const QImage b = small(other);
    int different = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QColor p(a.pixel(x, y));
            const QColor q(b.pixel(x, y));
            const int distance =
                std::abs(p.red() - q.red()) + std::abs(p.green() - q.green()) + std::abs(p.blue() - q.blue());
            different += distance > clearly;
        }
    }
    return different < enough;
}

// A picture of one rectangle, in units of the grid.
QImage block(const QRect& place, const QColor& color, int size = 64)
{
    QImage picture(size, size, QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.scale(size / 64.0, size / 64.0);
    painter.fillRect(place, color);
    return picture;
}

const QRect fullPlace(4, 4, 56, 56);
const QColor ink(0x22313A);
const QColor sand(0xF2E3C6);

} // namespace

class PicturesTest : public QuilletTest
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }

    void everyNamedPictureIsThereInItsSize()
    {
        const QMap<QString, int> named = namedPictures();
        QStringList faults;
        for (auto i = named.cbegin(); i != named.cend(); ++i) {
            QImageReader reader(i.key());
            if (!reader.canRead() || reader.format() != "png" ||
                reader.size() != QSize(i.value(), i.value()) || !reader.read().hasAlphaChannel())
                faults.append(i.key());
        }
        QCOMPARE(faults.join(QLatin1Char('\n')), QString());
    }

    void nothingIsCompiledInThatNobodyNames()
    {
        QStringList there;
        QDirIterator files(QStringLiteral(":/icons"), QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext())
            there.append(files.next());
        const QMap<QString, int> named = namedPictures();
        for (const QString& one : qAsConst(there))
            QVERIFY2(named.contains(one), qPrintable(one));
    }

    void everyApplicationOfTheCatalogueHasItsPicture()
    {
        const QStringList ids = catalogue::applicationIds();
        QCOMPARE(ids.size(), 48);
        for (const QString& id : ids) {
            const QString icon = catalogue::applicationValue(id, QStringLiteral("icon"));
            QVERIFY2(!catalogue::builtInIcon(icon).isNull(), qPrintable(id));
        }
    }

    void everyGroupOfTheCatalogueHasItsPicture()
    {
        const QSettings groups(catalogue::groupsPath(), QSettings::IniFormat);
        const QStringList ids = groups.childGroups();
        QCOMPARE(ids.size(), 8);
        for (const QString& id : ids) {
            const QString icon = groups.value(id + QStringLiteral("/icon")).toString();
            QVERIFY2(QFile::exists(path(QStringLiteral(":/icons/groups"), icon)), qPrintable(id));
        }
    }

    void everyPictureFillsItsPlace()
    {
        const QStringList all = namedPictures().keys();
        QStringList faults;
        for (const QString& one : all) {
            for (const QString& fault : faultsOfPlace(asPixels(QImage(one))))
                faults.append(one + QStringLiteral(": ") + fault);
        }
        QCOMPARE(faults.join(QLatin1Char('\n')), QString());
    }

    void everyPictureHasItsNeighboursWeight()
    {
        QStringList all = namedPictures().keys();
        all.removeOne(QStringLiteral(":/icons/other/tidewell.png")); // faint: it stands behind others
        QStringList faults;
        for (const QString& one : all) {
            for (const QString& fault : faultsOfWeight(asPixels(QImage(one))))
                faults.append(one + QStringLiteral(": ") + fault);
        }
        QCOMPARE(faults.join(QLatin1Char('\n')), QString());
    }

    void noTwoPicturesOfAFolderLookAlike()
    {
        const QStringList all = namedPictures().keys();
        const auto folderOf = [](const QString& one) { return one.section(QLatin1Char('/'), 0, -2); };
        QStringList faults;
        for (const QString& one : all) {
            for (const QString& other : all) {
                if (one < other && folderOf(one) == folderOf(other) && lookAlike(QImage(one), QImage(other)))
                    faults.append(one + QStringLiteral(" and ") + other);
            }
        }
        QCOMPARE(faults.join(QLatin1Char('\n')), QString());
    }

    // --- What is told of pictures that are wrong

    void aPictureInAWrongPlaceIsTold_data()
    {
        QTest::addColumn<QImage>("picture");
        QTest::addColumn<QString>("faults");
        QTest::newRow("good") << block(fullPlace, ink) << QString();
        QTest::newRow("good, of 32 pixels") << block(fullPlace, ink, 32) << QString();
        QTest::newRow("good, landscape") << block({4, 12, 56, 40}, ink) << QString();
        QTest::newRow("nothing") << block({}, ink) << QStringLiteral("empty");
        QTest::newRow("a pixel in the margin")
            << block({3, 4, 57, 56}, ink) << QStringLiteral("in its margins");
        QTest::newRow("a pixel in the margin of 32")
            << block({4, 4, 58, 56}, ink, 32) << QStringLiteral("in its margins");
        QTest::newRow("to the left") << block({4, 4, 50, 56}, ink) << QStringLiteral("not in the middle");
        QTest::newRow("above") << block({4, 4, 56, 50}, ink) << QStringLiteral("not in the middle");
        QTest::newRow("small") << block({8, 8, 48, 48}, ink) << QStringLiteral("small");
        QTest::newRow("narrow") << block({16, 4, 32, 56}, ink) << QStringLiteral("small");
    }
    void aPictureInAWrongPlaceIsTold()
    {
        QFETCH(QImage, picture);
        QTEST(faultsOfPlace(picture).join(QLatin1Char('|')), "faults");
    }

    void aPictureOfAnotherWeightIsTold_data()
    {
        QTest::addColumn<QImage>("picture");
        QTest::addColumn<QString>("faults");
        QTest::newRow("good") << block({4, 12, 56, 40}, ink) << QString();
        QTest::newRow("a thin bar") << block({4, 28, 56, 8}, ink) << QStringLiteral("light");
        QTest::newRow("everything") << block({0, 0, 64, 64}, ink) << QStringLiteral("heavy");
        QTest::newRow("sand") << block({4, 12, 56, 40}, sand)
                              << QStringLiteral("lost on the panel|lost on white");
        // Greyer than white by more than 60, than the panel by less.
        QTest::newRow("grey") << block({4, 12, 56, 40}, QColor(0xB9B9B9))
                              << QStringLiteral("lost on the panel");
    }
    void aPictureOfAnotherWeightIsTold()
    {
        QFETCH(QImage, picture);
        QTEST(faultsOfWeight(picture).join(QLatin1Char('|')), "faults");
    }

    void picturesThatLookAlikeAreTold()
    {
        const QImage one = block(fullPlace, ink);
        QVERIFY(lookAlike(one, one));
        QVERIFY(lookAlike(one, block({4, 4, 56, 55}, ink)));
        QVERIFY(!lookAlike(one, block({4, 12, 56, 40}, ink)));
        QVERIFY(!lookAlike(one, block(fullPlace, QColor(0x2AA7B8))));
        QVERIFY(!lookAlike(one, block({}, ink)));
    }
};

QTEST_MAIN(PicturesTest)
#include "tst_pictures.moc"
