// A style plugin that answers to "plastique", for the test of start-up. The style says when it is installed.
#include <QCommonStyle>
#include <QStylePlugin>

class TestStyle : public QCommonStyle
{
    Q_OBJECT

public:
    using QCommonStyle::polish;
    void polish(QApplication* application) override
    {
        qDebug("test style installed");
        QCommonStyle::polish(application);
    }
};

class TestStylePlugin : public QStylePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QStyleFactoryInterface_iid FILE "teststyle.json")

public:
    QStyle* create(const QString&) override { return new TestStyle; }
};

#include "teststyle.moc"
