#pragma once

#include <QWidget>

// The file manager, a page of the shell. Still empty. Created and owned by the task bar.
class FileSystemWidget : public QWidget
{
    Q_OBJECT

public:
    explicit FileSystemWidget(QWidget* parent = nullptr);

signals:
    // A file was chosen to be opened, with this application or, when it is null, with the one registered for
    // it.
    void openFile(QString path, QString application = QString());
};
