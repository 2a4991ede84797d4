#include "files/progressdialog.h"

#include "files/fileoperations.h"
#include "files/longwork.h"
#include "shell/elidedlabel.h"

#include "support/quillettest.h"

#include <QProgressBar>
#include <QPushButton>
#include <QtTest>

#include <memory>

using files::Progress;
using files::ProgressDialog;

class ProgressDialogTest : public QuilletTest
{
    Q_OBJECT

    std::unique_ptr<Progress> m_progress;
    std::unique_ptr<ProgressDialog> m_dialog;

    void open(bool canBeCancelled)
    {
        m_dialog = std::make_unique<ProgressDialog>(
            files::LongWork{QStringLiteral("Copying"), canBeCancelled}, m_progress.get(), nullptr);
        m_dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
    }

    QString text() { return m_dialog->findChild<ElidedLabel*>()->text(); }
    QProgressBar* bar() { return m_dialog->findChild<QProgressBar*>(); }
    QPushButton* button() { return m_dialog->findChild<QPushButton*>(); }

private slots:
    void init()
    {
        QuilletTest::init();
        m_progress = std::make_unique<Progress>();
    }

    void cleanup()
    {
        m_dialog.reset();
        QuilletTest::cleanup();
    }

    void itIsModalAndHasItsTitle()
    {
        open(false);
        QVERIFY(m_dialog->isModal());
        QCOMPARE(m_dialog->windowTitle(), QStringLiteral("Copying"));
        QVERIFY(!(m_dialog->windowFlags() & Qt::WindowCloseButtonHint));
        QCOMPARE(bar()->accessibleName(), QStringLiteral("Copying"));
    }

    void itTellsWhatItIsAtAndHowManyOfHowMany()
    {
        m_progress->begin(3);
        m_progress->beginEntry(QStringLiteral("/folder/%1 <b>first"));
        open(true);
        QCOMPARE(text(), QStringLiteral("1 of 3: %1 <b>first"));
        QCOMPARE(bar()->maximum(), 3);
        QCOMPARE(bar()->value(), 0);
        m_progress->endEntry();
        m_progress->beginEntry(QStringLiteral("/folder/second"));
        QTRY_COMPARE(text(), QStringLiteral("2 of 3: second")); // by itself
        QCOMPARE(bar()->value(), 1);
    }

    void itNeverTellsMoreThanThereAre()
    {
        m_progress->begin(2);
        for (int i = 0; i < 5; ++i)
            m_progress->endEntry();
        m_progress->beginEntry(QStringLiteral("/sixth"));
        open(false);
        QCOMPARE(text(), QStringLiteral("2 of 2: sixth"));
        QCOMPARE(bar()->value(), 1);
        QCOMPARE(bar()->maximum(), 2);
    }

    void whatCannotBeCountedHasABusyBar_data()
    {
        QTest::addColumn<int>("total");
        QTest::newRow("not known yet") << 0;
        QTest::newRow("one file") << 1;
    }
    void whatCannotBeCountedHasABusyBar()
    {
        QFETCH(int, total);
        m_progress->begin(total);
        m_progress->beginEntry(QStringLiteral("/folder/big"));
        open(false);
        QCOMPARE(text(), QStringLiteral("big"));
        QCOMPARE(bar()->minimum(), 0);
        QCOMPARE(bar()->maximum(), 0);
    }

    void aLongNameDoesNotMakeItWider()
    {
        open(true);
        const int width = m_dialog->width();
        m_progress->begin(1);
        m_progress->beginEntry('/' + QString(255, 'W'));
        QTRY_COMPARE(text().size(), 255);
        QCoreApplication::processEvents();
        QCOMPARE(m_dialog->width(), width);
    }

    void whatCannotBeCancelledHasNoButtonAndStays_data()
    {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("Escape") << true;
        QTest::newRow("close box") << false;
    }
    void whatCannotBeCancelledHasNoButtonAndStays()
    {
        QFETCH(bool, byKey);
        open(false);
        QVERIFY(!button());
        if (byKey)
            QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
        else
            QVERIFY(!m_dialog->close());
        QVERIFY(m_dialog->isVisible());
        QVERIFY(!m_progress->isCancelled());
    }

    void cancellingTellsTheWorkAndStaysUntilItHasStopped_data()
    {
        QTest::addColumn<QString>("by");
        for (const char* const by : {"button", "Escape", "close box"})
            QTest::newRow(by) << by;
    }
    void cancellingTellsTheWorkAndStaysUntilItHasStopped()
    {
        QFETCH(QString, by);
        open(true);
        QCOMPARE(button()->text(), QStringLiteral("Cancel"));
        if (by == QLatin1String("button"))
            QTest::mouseClick(button(), Qt::LeftButton);
        else if (by == QLatin1String("Escape"))
            QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
        else
            QVERIFY(!m_dialog->close());
        QVERIFY(m_progress->isCancelled());
        QVERIFY(m_dialog->isVisible());
        QVERIFY(!button()->isEnabled());
        QCOMPARE(text(), QStringLiteral("Cancelling..."));
    }

    void returnDoesNotCancel()
    {
        open(true);
        QTest::keyClick(m_dialog->focusWidget() ? m_dialog->focusWidget() : m_dialog.get(), Qt::Key_Return);
        QVERIFY(!m_progress->isCancelled());
    }
};

QTEST_MAIN(ProgressDialogTest)
#include "tst_progressdialog.moc"
