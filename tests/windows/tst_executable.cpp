// What Windows finds in quillet.exe besides the code.
#include "support/quillettest.h"

#include <QtTest>

#include <windows.h>

#include <memory>

namespace {

QString program()
{
    return QString::fromLocal8Bit(qgetenv("QUILLET_PROGRAM"));
}

const wchar_t* wide(const QString& text)
{
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

struct LibraryDeleter
{
    using pointer = HMODULE;
    void operator()(HMODULE module) const { FreeLibrary(module); }
};

} // namespace

class ExecutableTest : public QuilletTest
{
    Q_OBJECT

    std::unique_ptr<HMODULE, LibraryDeleter> m_module;

    QByteArray resource(LPCWSTR type, int id)
    {
        const HRSRC found = FindResourceW(m_module.get(), MAKEINTRESOURCEW(id), type);
        if (!found)
            return QByteArray();
        const auto data = static_cast<const char*>(LockResource(LoadResource(m_module.get(), found)));
        return QByteArray(data, static_cast<int>(SizeofResource(m_module.get(), found)));
    }

private slots:
    void initTestCase()
    {
        m_module.reset(LoadLibraryExW(wide(program()), nullptr, LOAD_LIBRARY_AS_DATAFILE));
        QVERIFY2(m_module, qPrintable(program()));
    }

    void itIsAProgramWithoutConsole()
    {
        const QByteArray file = Sandbox::readFile(program());
        const int header = (file[0x3c] & 0xff) | (file[0x3d] & 0xff) << 8;
        QCOMPARE(file.mid(header, 4), QByteArray("PE\0\0", 4));
        QCOMPARE(int(file[header + 24 + 68]), IMAGE_SUBSYSTEM_WINDOWS_GUI);
    }

    void itHasTheProjectsVersion()
    {
        DWORD ignored = 0;
        const DWORD size = GetFileVersionInfoSizeW(wide(program()), &ignored);
        QVERIFY(size > 0);
        QByteArray info(static_cast<int>(size), '\0');
        QVERIFY(GetFileVersionInfoW(wide(program()), 0, size, info.data()));

        void* text = nullptr;
        UINT length = 0;
        QVERIFY(VerQueryValueW(info.data(), L"\\StringFileInfo\\040904B0\\ProductVersion", &text, &length));
        QCOMPARE(QString::fromWCharArray(static_cast<const wchar_t*>(text)), QStringLiteral(PROJECT_VERSION));
        QVERIFY(VerQueryValueW(info.data(), L"\\StringFileInfo\\040904B0\\ProductName", &text, &length));
        QCOMPARE(QString::fromWCharArray(static_cast<const wchar_t*>(text)), QStringLiteral("Quillet"));

        VS_FIXEDFILEINFO* fixed = nullptr;
        QVERIFY(VerQueryValueW(info.data(), L"\\", reinterpret_cast<void**>(&fixed), &length));
        QCOMPARE(QStringLiteral("%1.%2.%3")
                     .arg(HIWORD(fixed->dwFileVersionMS))
                     .arg(LOWORD(fixed->dwFileVersionMS))
                     .arg(HIWORD(fixed->dwFileVersionLS)),
                 QStringLiteral(PROJECT_VERSION));
    }

    void itHasAnIconInEverySize()
    {
        const QByteArray group = resource(MAKEINTRESOURCEW(14), 1); // RT_GROUP_ICON
        QVERIFY(group.size() > 6);
        QList<int> sizes; // widths, 0 standing for 256
        for (int at = 6; at + 14 <= group.size(); at += 14)
            sizes.append(static_cast<unsigned char>(group[at]));
        for (const int size : {16, 24, 32, 48, 64, 128, 0})
            QVERIFY2(sizes.contains(size), qPrintable(QString::number(size)));
    }

    void itsManifestRunsItAsTheInvokerOnEverySupportedWindows()
    {
        const QByteArray manifest = resource(MAKEINTRESOURCEW(24), 1); // RT_MANIFEST, for processes
        QVERIFY(manifest.contains("level=\"asInvoker\""));
        for (const char* system :
             {"{35138b9a-5d96-4fbd-8e2d-a2440225f93a}", "{4a2f28e3-53b9-4441-ba9c-d69d4a4a6e38}",
              "{1f676c76-80e1-4239-95bb-83d0f6d0da78}", "{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"})
            QVERIFY2(manifest.contains(system), system);
    }

    void itsManifestLeavesTheCodePageToTheSystem()
    {
        QVERIFY(!resource(MAKEINTRESOURCEW(24), 1).contains("activeCodePage"));
    }
};

QTEST_GUILESS_MAIN(ExecutableTest)
#include "tst_executable.moc"
