#include "env/paths.h"
#include "support/quillettest.h"

#include <QDir>
#include <QtTest>

class PathsTest : public QuilletTest
{
    Q_OBJECT

private slots:
    void settingsPathIsProgramFilesFollowedDirectlyByTheFile()
    {
        sandbox().setVariable("PROGRAMW6432", "C:\\Program Files");
        QCOMPARE(env::settingsPath(), QStringLiteral("C:\\Program Files\\Tidewell Desktop\\quillet.ini"));
    }

    void settingsPathTakesTheVariableInTheSystemsEncoding()
    {
        const QString folder = QString::fromUtf8("C:\\Aplicación");
        sandbox().setVariable("PROGRAMW6432", folder.toLocal8Bit());
        QCOMPARE(env::settingsPath(), folder + QStringLiteral("\\Tidewell Desktop\\quillet.ini"));
    }

    void settingsPathWithoutVariableIsRelativeToTheDrive()
    {
        sandbox().setVariable("PROGRAMW6432", QByteArray());
        QCOMPARE(env::settingsPath(), QStringLiteral("\\Tidewell Desktop\\quillet.ini"));
    }

    void tokenPathHasThePlatformsSeparator()
    {
        QCOMPARE(env::tokenPath(), sandbox().home() + QDir::separator() + QStringLiteral(".tidewell.ini"));
    }

    void credentialsPathHasASlash()
    {
        QCOMPARE(env::credentialsPath(), sandbox().home() + QStringLiteral("/.credentials"));
    }

    void logPathHasASlash() { QCOMPARE(env::logPath(), sandbox().home() + QStringLiteral("/.quillet.log")); }
};

QTEST_GUILESS_MAIN(PathsTest)
#include "tst_paths.moc"
