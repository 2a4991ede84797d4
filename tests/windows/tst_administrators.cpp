// The same test on the simulated and on the real Windows.
#include "support/quillettest.h"
#include "winapi/administrators.h"

#include <QtTest>

#include <windows.h>

#ifdef Q_OS_WIN
#else
#include "simwin.h"
#endif

namespace {

void setMember(bool member)
{
#ifdef Q_OS_WIN
    RevertToSelf();
    if (member)
        return;
    BYTE sid[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof sid;
    HANDLE own = nullptr;
    HANDLE restricted = nullptr;
    QVERIFY(CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, sid, &size));
    QVERIFY(OpenProcessToken(GetCurrentProcess(), TOKEN_ALL_ACCESS, &own));
    SID_AND_ATTRIBUTES disabled = {sid, 0};
    QVERIFY(CreateRestrictedToken(own, 0, 1, &disabled, 0, nullptr, 0, nullptr, &restricted));
    QVERIFY(ImpersonateLoggedOnUser(restricted));
    CloseHandle(restricted);
    CloseHandle(own);
#else
    simwin::setAdministrator(member);
#endif
}

} // namespace

class AdministratorsTest : public QuilletTest
{
    Q_OBJECT

private slots:
    void aMemberOfTheGroupIsAnAdministrator()
    {
        setMember(true);
        QVERIFY(winapi::userIsAdministrator());
    }

    void aTokenWithoutTheGroupIsNone()
    {
        setMember(false);
        const bool administrator = winapi::userIsAdministrator();
        setMember(true);
        QVERIFY(!administrator);
    }

#ifndef Q_OS_WIN
    void theSizeOfTheSidBufferIs68AndTheCurrentTokenIsAsked()
    {
        setMember(true);
        winapi::userIsAdministrator();
        const QList<simwin::Call> calls = simwin::calls();
        QCOMPARE(calls.size(), 2);
        QCOMPARE(calls[0].function, QByteArray("CreateWellKnownSid"));
        QCOMPARE(calls[0].arguments, QStringList({"26", "68"}));
        QCOMPARE(calls[1].function, QByteArray("CheckTokenMembership"));
        QCOMPARE(calls[1].arguments, QStringList({"null"}));
    }

    void aMemberIsNoneWhenACallFails_data()
    {
        QTest::addColumn<QByteArray>("function");
        QTest::newRow("the identifier cannot be made") << QByteArray("CreateWellKnownSid");
        QTest::newRow("membership cannot be checked") << QByteArray("CheckTokenMembership");
    }
    void aMemberIsNoneWhenACallFails()
    {
        QFETCH(QByteArray, function);
        setMember(true);
        simwin::fail(function, ERROR_ACCESS_DENIED);
        QVERIFY(!winapi::userIsAdministrator());
        QVERIFY(simwin::callNames().contains(function));
    }
#endif
};

QTEST_GUILESS_MAIN(AdministratorsTest)
#include "tst_administrators.moc"
