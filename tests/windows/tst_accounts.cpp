// Password changes as this machine makes them: on the simulated Windows and on the real one, where nothing is
// changed.
#include "winapi/accounts.h"

#include "support/quillettest.h"

#ifndef _WIN32
#include "simwin.h"
#endif

#include <QtTest>

using winapi::PasswordChange;

Q_DECLARE_METATYPE(PasswordChange)

class AccountsTest : public QuilletTest
{
    Q_OBJECT

private slots:
    void everyResultHasItsMeaning_data()
    {
        QTest::addColumn<quint32>("result");
        QTest::addColumn<PasswordChange>("meaning");
        QTest::newRow("success") << 0U << PasswordChange::Made;
        QTest::newRow("invalid parameter") << 87U << PasswordChange::Made;
        QTest::newRow("access denied") << 5U << PasswordChange::NotPermitted;
        QTest::newRow("user not found") << 2221U << PasswordChange::NotPermitted;
        QTest::newRow("not the primary controller") << 2226U << PasswordChange::NotPermitted;
        QTest::newRow("invalid computer") << 2351U << PasswordChange::NotPermitted;
        QTest::newRow("invalid password") << 86U << PasswordChange::WrongOldPassword;
        QTest::newRow("password too short") << 2245U << PasswordChange::NewPasswordRefused;
        for (const quint32 other : {1U, 4U, 6U, 59U, 85U, 88U, 2220U, 2222U, 2225U, 2227U, 2244U, 2246U,
                                    2350U, 2352U, 0x80070005U, 0xFFFFFFFFU})
            QTest::addRow("%u", other) << other << PasswordChange::Failed;
    }
    void everyResultHasItsMeaning()
    {
        QFETCH(quint32, result);
        QTEST(winapi::passwordChange(result), "meaning");
    }

    void aChangeWithAWrongOldPasswordIsNotMade()
    {
        const quint32 result =
            winapi::changePassword(QStringLiteral("certainly not the password"), QStringLiteral("another"));
        qInfo("result: %u", result);
        QVERIFY(winapi::passwordChange(result) != PasswordChange::Made);
    }

#ifndef _WIN32
    void theCallersAccountIsChanged()
    {
        QCOMPARE(winapi::changePassword(QStringLiteral("tide"), QStringLiteral("ebb")), 0U);
        const QList<simwin::Call> calls = simwin::calls();
        QCOMPARE(calls.size(), 1);
        QCOMPARE(calls[0].function, QByteArray("NetUserChangePassword"));
        QCOMPARE(calls[0].arguments, QStringList({"(null)", "(null)", "tide", "ebb"}));
        QCOMPARE(simwin::accountPassword(), QStringLiteral("ebb"));
    }

    void windowsResultComesBackAsItIs()
    {
        for (const quint32 result : {1U, 86U, 2245U, 0xFFFFFFFFU}) {
            simwin::fail("NetUserChangePassword", result, 1);
            QCOMPARE(winapi::changePassword(QStringLiteral("tide"), QStringLiteral("ebb")), result);
        }
        QCOMPARE(simwin::accountPassword(), QStringLiteral("tide"));
        QCOMPARE(winapi::changePassword(QStringLiteral("Tide"), QStringLiteral("ebb")), 86U);
    }

    void passwordsArriveAsTheyAre_data()
    {
        QTest::addColumn<QString>("password");
        QTest::newRow("one letter") << QStringLiteral("x");
        QTest::newRow("blanks") << QStringLiteral("  a  b ");
        QTest::newRow("quotes") << QStringLiteral("\"'`\\%&<b>");
        QTest::newRow("accents") << QString::fromUtf8("contraseña");
        QTest::newRow("right to left") << QString::fromUtf8("סיסמה");
        QTest::newRow("beyond the first plane") << QString::fromUtf8("\xF0\x9F\x8C\x8A\xF0\x9F\x90\x9A");
        QTest::newRow("half a pair") << QString(QChar(0xD83C));
        QTest::newRow("500 letters") << QString(500, QLatin1Char('w'));
        QTest::newRow("empty") << QStringLiteral("");
        QTest::newRow("null") << QString();
    }
    void passwordsArriveAsTheyAre()
    {
        QFETCH(QString, password);
        QCOMPARE(winapi::changePassword(QStringLiteral("tide"), password), 0U);
        QCOMPARE(simwin::accountPassword(), password + QString(""));
        QCOMPARE(winapi::changePassword(password, QStringLiteral("tide")), 0U);
        QCOMPARE(simwin::accountPassword(), QStringLiteral("tide"));
    }
#endif
};

QTEST_GUILESS_MAIN(AccountsTest)
#include "tst_accounts.moc"
